#include "shells/headless/terminal_text.h"

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <locale.h>
#include <memory>
#include <type_traits>

#include "base/utf8.h"
#include "freedesktop/plain_text/terminal_line.h"

namespace quorvel::headless {

using freedesktop::terminalLine;

namespace {
constexpr std::string_view ellipsis = "\u2026";

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
            row[column] = textCutToWidth(terminalLine(row[column]), limits.widestCell);
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
