// Where the XML library is in its input, in bytes. From version 2.9 on the library has functions of
// 64 bits for that, and their older forms, which it had alone before, are deprecated.
#pragma once

#include <cstdint>

#include <expat.h>

namespace quorvel::freedesktop {

#if XML_MAJOR_VERSION > 2 || XML_MINOR_VERSION >= 9

// The start of what is being parsed; negative before the first byte.
inline std::int64_t xmlByteIndex(XML_Parser parser) {
    return XML_GetCurrentByteIndex64(parser);
}

// The length of what is being parsed.
inline std::uint64_t xmlByteCount(XML_Parser parser) {
    return XML_GetCurrentByteCount64(parser);
}

#else

inline std::int64_t xmlByteIndex(XML_Parser parser) {
    return XML_GetCurrentByteIndex(parser);
}

inline std::uint64_t xmlByteCount(XML_Parser parser) {
    return static_cast<std::uint64_t>(XML_GetCurrentByteCount(parser));
}

#endif

} // namespace quorvel::freedesktop
