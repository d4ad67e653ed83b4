#include "tests/freedesktop/graphics/pdf_text.h"

#include <array>

#include <zlib.h>

namespace quorvel::freedesktop {
namespace {

// What a zlib stream at the front of the bytes contains; of other bytes nothing.
std::string inflated(std::string_view bytes) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) {
        return {};
    }
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    std::string contents;
    int status = Z_OK;
    while (status == Z_OK) {
        std::array<char, 4096> piece{};
        stream.next_out = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        status = inflate(&stream, Z_NO_FLUSH);
        contents.append(piece.data(), piece.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    return status == Z_STREAM_END ? contents : std::string();
}

} // namespace

std::string pdfText(std::string_view file) {
    constexpr std::string_view start = "stream\n"; // also ends the word "endstream", where none is
    std::string text(file);
    for (std::size_t at = file.find(start); at != std::string_view::npos;
         at = file.find(start, at + 1)) {
        text += inflated(file.substr(at + start.size()));
    }
    return text;
}

} // namespace quorvel::freedesktop
