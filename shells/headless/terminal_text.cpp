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

// While an object exists, the C library knows all of Unicode, whatever the user's locale is.
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

// The bytes of the longest prefix that fits into the columns.
std::size_t fittingLength(std::string_view text, std::size_t columns) {
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

std::vector<std::vector<std::string>>
printableCells(const std::vector<std::vector<std::string>>& rows, const ColumnLimits& limits) {
    std::vector<std::vector<std::string>> cells = rows;
    for (std::vector<std::string>& row : cells) {
        for (std::string& cell : row) {
            cell = truncatedToWidth(terminalLine(cell), limits.widestCell);
        }
    }
    return cells;
}

std::vector<std::size_t> columnWidths(const std::vector<std::vector<std::string>>& cells,
                                      const ColumnLimits& limits) {
    std::vector<std::size_t> widths;
    for (const std::vector<std::string>& row : cells) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::size_t width = std::min(displayWidth(row[column]), limits.widestColumn);
            widths[column] = std::max(widths[column], width);
        }
    }
    return widths;
}

std::string lineOf(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) {
    constexpr std::size_t gap = 2; // spaces between columns
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
        const std::size_t width = displayWidth(row[column]);
        line += row[column];
        line.append(std::max(widths[column], width) - width + gap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
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

std::string truncatedToWidth(std::string_view text, std::size_t columns) {
    // Combining marks occupy no column, so their number needs a limit of its own.
    constexpr std::size_t bytesPerColumn = 32;
    const std::string_view prefix = text.substr(0, columns * bytesPerColumn);
    if (prefix.size() == text.size() && fittingLength(text, columns) == text.size()) {
        return std::string(text);
    }
    if (columns == 0) {
        return {};
    }
    std::size_t length = fittingLength(prefix, columns - 1);
    // The prefix may end inside a character.
    while (length > 0 && length < text.size() &&
           (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
        --length;
    }
    return std::string(text.substr(0, length)).append(ellipsis);
}

std::string textInColumns(const std::vector<std::vector<std::string>>& rows,
                          const ColumnLimits& limits) {
    const std::vector<std::vector<std::string>> cells = printableCells(rows, limits);
    const std::vector<std::size_t> widths = columnWidths(cells, limits);
    std::string text;
    for (const std::vector<std::string>& row : cells) {
        text += lineOf(row, widths) + '\n';
    }
    return text;
}

} // namespace quorvel::headless
