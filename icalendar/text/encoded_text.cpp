#include "icalendar/text/encoded_text.h"

#include <algorithm>
#include <array>

#include "base/ascii_text.h"
#include "base/utf8.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

constexpr std::array<std::int8_t, 256> makeBase64Values() {
    std::array<std::int8_t, 256> values{};
    for (std::int8_t& value : values) {
        value = -1;
    }
    std::int8_t next = 0;
    for (const char c :
         std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")) {
        values[static_cast<unsigned char>(c)] = next++;
    }
    return values;
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> upperCaseNames) {
    return std::any_of(upperCaseNames.begin(), upperCaseNames.end(),
                       [text](std::string_view name) { return equalsIgnoringCase(text, name); });
}

TransferEncoding encodingNamed(std::string_view name) {
    if (isOneOf(name, {"QUOTED-PRINTABLE"})) {
        return TransferEncoding::quotedPrintable;
    }
    return isOneOf(name, {"BASE64", "B"}) ? TransferEncoding::base64 : TransferEncoding::none;
}

std::string withLineFeeds(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (!isPair) {
            result += text[i] == '\r' ? '\n' : text[i];
        }
    }
    while (!result.empty() && result.back() == '\n') {
        result.pop_back();
    }
    return result;
}

} // namespace

std::optional<Utf16Decoder> Utf16Decoder::forTextWithMark(std::string_view text) {
    const std::string_view mark = text.substr(0, markSize);
    if (mark == "\xFF\xFE" || mark == "\xFE\xFF") {
        return Utf16Decoder(mark == "\xFE\xFF");
    }
    return std::nullopt;
}

void Utf16Decoder::decode(std::string_view bytes, std::string& utf8) {
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (!m_firstByte) {
            m_firstByte = byte;
            continue;
        }
        const unsigned first = *m_firstByte;
        m_firstByte.reset();
        addUnit(m_isBigEndian ? first << 8U | byte : unsigned{byte} << 8U | first, utf8);
    }
}

void Utf16Decoder::addUnit(std::uint32_t unit, std::string& utf8) {
    if (m_firstUnit) {
        const std::uint32_t high = *m_firstUnit;
        m_firstUnit.reset();
        if (isLowSurrogate(unit)) {
            appendCharacter(utf8, joinSurrogates(high, unit));
            return;
        }
        appendCharacter(utf8, replacementCharacter);
    }
    if (isHighSurrogate(unit)) {
        m_firstUnit = unit;
    } else {
        appendCharacter(utf8, unit == 0 || isLowSurrogate(unit) ? replacementCharacter : unit);
    }
}

void Utf16Decoder::finish(std::string& utf8) {
    if (m_firstUnit || m_firstByte) {
        appendCharacter(utf8, replacementCharacter);
    }
    m_firstUnit.reset();
    m_firstByte.reset();
}

TransferEncoding transferEncoding(std::string_view parameters) {
    if (const auto name = parameterValue(parameters, "ENCODING")) {
        return encodingNamed(*name);
    }
    while (!parameters.empty()) {
        const std::size_t end = parameters.find(';');
        const TransferEncoding encoding = encodingNamed(parameters.substr(0, end));
        if (encoding != TransferEncoding::none) {
            return encoding;
        }
        parameters.remove_prefix(end == std::string_view::npos ? parameters.size() : end + 1);
    }
    return TransferEncoding::none;
}

std::string unfoldedQuotedPrintable(std::string_view rawLine) {
    std::string result;
    while (!rawLine.empty()) {
        const std::size_t end = rawLine.find_first_of("\r\n");
        result += rawLine.substr(0, end);
        if (end == std::string_view::npos) {
            break;
        }
        rawLine.remove_prefix(std::min(rawLine.find_first_not_of("\r\n", end), rawLine.size()));
        if (!result.empty() && result.back() == '=') {
            result.pop_back();
        } else if (!rawLine.empty()) {
            rawLine.remove_prefix(1);
        }
    }
    return result;
}

std::string decodedQuotedPrintable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool mayBeEncoded = text[i] == '=' && i + 2 < text.size();
        const auto high = mayBeEncoded ? hexDigitValue(text[i + 1]) : std::nullopt;
        const auto low = mayBeEncoded ? hexDigitValue(text[i + 2]) : std::nullopt;
        if (high && low) {
            result += static_cast<char>(*high * 16 + *low);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::optional<std::string> decodedBase64(std::string_view text) {
    static constexpr std::array<std::int8_t, 256> values = makeBase64Values();
    std::string result;
    std::uint32_t bits = 0;
    unsigned count = 0;
    bool isPadded = false;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            continue;
        }
        const std::int8_t value = values[static_cast<unsigned char>(c)];
        if (c == '=') {
            isPadded = true;
        } else if (value < 0 || isPadded) {
            return std::nullopt;
        } else {
            bits = bits << 6U | static_cast<std::uint32_t>(value);
            count += 6;
        }
        if (count >= 8) {
            count -= 8;
            result += static_cast<char>(bits >> count & 0xFFU);
        }
    }
    return result;
}

std::optional<DecodedText> decodedText(const ContentLine& line) {
    if (line.parameters.empty()) {
        return std::nullopt;
    }
    const TransferEncoding encoding = transferEncoding(line.parameters);
    const auto set = parameterValue(line.parameters, "CHARSET");
    if (encoding == TransferEncoding::none && !set) {
        return std::nullopt;
    }
    DecodedText result;
    result.text = line.value;
    if (encoding == TransferEncoding::quotedPrintable) {
        result.text = decodedQuotedPrintable(line.value);
    } else if (encoding == TransferEncoding::base64) {
        const auto bytes = decodedBase64(line.value);
        result.isDecoded = bytes.has_value();
        result.text = bytes.value_or(result.text);
    }
    if (set && isOneOf(*set, {"ISO-8859-1", "ISO8859-1", "ISO_8859-1", "LATIN1"})) {
        result.text = utf8FromLatin1(result.text);
    } else if (set && !isOneOf(*set, {"UTF-8", "UTF8", "US-ASCII", "ASCII", ""})) {
        result.unknownCharset = *set;
    }
    result.text = withLineFeeds(result.text);
    return result;
}

} // namespace quorvel::icalendar
