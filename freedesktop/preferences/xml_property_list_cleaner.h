// An XML property list written anew, so that the library sees nothing but plain elements.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

struct CleanedXml {
    std::string xml; // <plist>…</plist> around one object, texts as CDATA
    std::string problem;
};

bool looksLikeXml(std::string_view text);

// `text` is UTF-8. Comments, declarations, attributes and what follows the root are dropped,
// entities resolved, `<dict>` without `<plist>` accepted; elements must match and be those of a
// property list, and the budgets are kept.
CleanedXml cleanedXmlPropertyList(std::string_view text);

} // namespace quorvel::freedesktop
