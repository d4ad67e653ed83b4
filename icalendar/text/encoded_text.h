// Texts that are not plain UTF-8: files in UTF-16 (RFC 2781), and the values that vCalendar 1.0
// encodes within a line (RFC 2045 6.7, 6.8).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {

// Converts a text to UTF-8 that comes in pieces, split anywhere. An unpaired surrogate, half a code
// unit and NUL become U+FFFD.
class Utf16Decoder {
public:
    static constexpr std::size_t markSize = 2; // bytes
    // Absent where the text does not begin with a byte-order mark of UTF-16. The mark itself must
    // not be passed to decode().
    static std::optional<Utf16Decoder> forTextWithMark(std::string_view text);

    void decode(std::string_view bytes, std::string& utf8); // appends
    void finish(std::string& utf8);                         // once, after the last piece

private:
    explicit Utf16Decoder(bool isBigEndian)
        : m_isBigEndian(isBigEndian) {}
    void addUnit(std::uint32_t unit, std::string& utf8);

    bool m_isBigEndian;
    std::optional<unsigned char> m_firstByte; // of a unit
    std::optional<std::uint32_t> m_firstUnit; // the high half of a pair
};

enum class TransferEncoding { none, quotedPrintable, base64 };

// By ENCODING, or by its value alone, as vCalendar 1.0 allows.
TransferEncoding transferEncoding(std::string_view parameters);

// A raw line without its folds. An equals sign before a line break belongs to neither the text nor
// the fold: the white space behind the break is then text.
std::string unfoldedQuotedPrintable(std::string_view rawLine);

// An equals sign without two hexadecimal digits behind it is left as it is.
std::string decodedQuotedPrintable(std::string_view text);
// Skips white space and line breaks. Absent where the text is not base64.
std::optional<std::string> decodedBase64(std::string_view text);

struct DecodedText {
    std::string text;      // line breaks are LF, without any at the end
    bool isDecoded = true; // false: as it is written
    std::optional<std::string>
        unknownCharset; // of a character set that is not known: bytes as they are
};

// Absent where the line's parameters name neither an encoding nor a character set, as nearly
// always. Known sets are UTF-8, US-ASCII and ISO-8859-1.
std::optional<DecodedText> decodedText(const ContentLine& line);

} // namespace quorvel::icalendar
