#include "shells/headless/terminal_text.h"

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <locale.h>
#include <memory>
#include <optional>
#include <type_traits>

namespace quorvel::headless {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr std::string_view ellipsis = "\u2026";

struct DecodedCharacter {
    std::optional<char32_t> character; // absent: damaged bytes
    std::size_t length = 1;            // bytes taken
};

// Damage takes one byte at a time, so that what follows is read again from its start.
DecodedCharacter decodeCharacter(std::string_view text) {
    const auto byteAt = [text](std::size_t index) {
        return static_cast<unsigned char>(text[index]);
    };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : (lead >= 0xE0 ? 3 : 2);
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
        return {};
    }
    char32_t character = lead & (0xFFU >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        if ((byteAt(index) & 0xC0U) != 0x80U) {
            return {};
        }
        character = (character << 6U) | (byteAt(index) & 0x3FU);
    }
    const bool isOverlong =
        (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (isOverlong || isSurrogate || character > 0x10FFFF) {
        return {};
    }
    return {character, length};
}

void appendCharacter(std::string& text, char32_t character) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | (character >> 6U));
        append(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        append(0xE0U | (character >> 12U));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    } else {
        append(0xF0U | (character >> 18U));
        append(0x80U | ((character >> 12U) & 0x3FU));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    }
}

bool isLineSpace(char32_t character) {
    return (character >= 0x09 && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

// The embeddings, overrides and isolates: left open they would turn the columns around.
bool turnsDirection(char32_t character) {
    return (character >= 0x202A && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

struct FreeLocale {
    void operator()(locale_t locale) const { freelocale(locale); }
};
using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

// While it lives, the C library knows all of Unicode, whatever the user's own locale is.
class UnicodeLocale {
public:
    UnicodeLocale() {
        static const Locale unicode(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)); // slow to make
        if (unicode) {
            m_previous = uselocale(unicode.get());
        }
    }
    ~UnicodeLocale() {
        if (m_previous != nullptr) {
            uselocale(m_previous);
        }
    }
    UnicodeLocale(const UnicodeLocale&) = delete;
    UnicodeLocale& operator=(const UnicodeLocale&) = delete;

private:
    locale_t m_previous = nullptr;
};

std::size_t widthOf(char32_t character) {
    if (character < 0x7F) {
        return 1;
    }
    const UnicodeLocale unicode;
    const int width = wcwidth(static_cast<wchar_t>(character));
    return width < 0 ? 1 : static_cast<std::size_t>(width);
}

// Bytes of the longest beginning that takes no more than so many columns.
std::size_t lengthFitting(std::string_view text, std::size_t columns) {
    std::size_t used = 0;
    std::size_t length = 0;
    while (length < text.size()) {
        const DecodedCharacter next = decodeCharacter(text.substr(length));
        used += widthOf(next.character.value_or(replacementCharacter));
        if (used > columns) {
            break;
        }
        length += next.length;
    }
    return length;
}

} // namespace

std::string harmlessText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const DecodedCharacter next = decodeCharacter(text);
        text.remove_prefix(next.length);
        const char32_t character = next.character.value_or(replacementCharacter);
        if (isLineSpace(character)) {
            result += ' ';
        } else if (!turnsDirection(character)) {
            appendCharacter(result, isControl(character) ? replacementCharacter : character);
        }
    }
    return result;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const DecodedCharacter next = decodeCharacter(text);
        text.remove_prefix(next.length);
        width += widthOf(next.character.value_or(replacementCharacter));
    }
    return width;
}

std::string textCutToWidth(std::string_view text, std::size_t columns) {
    // Marks that combine take no column, so their number is bounded apart.
    constexpr std::size_t bytesPerColumn = 32;
    const std::string_view head = text.substr(0, columns * bytesPerColumn);
    if (head.size() == text.size() && lengthFitting(text, columns) == text.size()) {
        return std::string(text);
    }
    if (columns == 0) {
        return {};
    }
    std::size_t length = lengthFitting(head, columns - 1);
    // The head may end inside a character.
    while (length > 0 && length < text.size() &&
           (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
        --length;
    }
    return std::string(text.substr(0, length)).append(ellipsis);
}

std::string textInColumns(const std::vector<std::vector<std::string>>& rows,
                          const ColumnLimits& limits) {
    std::vector<std::vector<std::string>> cells = rows;
    std::vector<std::size_t> columnWidths;
    for (std::vector<std::string>& row : cells) {
        columnWidths.resize(std::max(columnWidths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            row[column] = textCutToWidth(row[column], limits.widestCell);
            const std::size_t width = displayWidth(row[column]);
            if (width <= limits.widestColumn) {
                columnWidths[column] = std::max(columnWidths[column], width);
            } else {
                columnWidths[column] = limits.widestColumn;
            }
        }
    }
    std::string text;
    for (const std::vector<std::string>& row : cells) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::size_t width = displayWidth(row[column]);
            line += row[column];
            line.append(std::max(columnWidths[column], width) - width + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line;
        text += '\n';
    }
    return text;
}

} // namespace quorvel::headless
