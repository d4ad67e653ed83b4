// Cutting a text into content lines, and a content line into name, parameters and value.
#include "freedesktop/calendar/content_lines.h"

#include <algorithm>

namespace quorvel::freedesktop::ics {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t longestLine = std::size_t{4} << 20U; // bytes

bool isFold(char c) {
    return c == ' ' || c == '\t';
}

bool isLineBreak(char c) {
    return c == '\n' || c == '\r';
}

// The library's search for one of several characters is slow on short texts, and these are many.
template <typename Wanted>
std::size_t findIf(std::string_view text, Wanted isWanted) {
    const auto found = std::find_if(text.begin(), text.end(), isWanted);
    return found == text.end() ? std::string_view::npos
                               : static_cast<std::size_t>(found - text.begin());
}

std::string_view withoutTrailingBreaks(std::string_view text) {
    while (!text.empty() && isLineBreak(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// The first such character outside quotes.
std::size_t findUnquoted(std::string_view text, char wanted) {
    const std::size_t first = text.find(wanted);
    if (text.substr(0, first).find('"') == std::string_view::npos) {
        return first; // nearly always
    }
    bool quoted = false;
    return findIf(text, [wanted, &quoted](char c) {
        quoted = c == '"' ? !quoted : quoted;
        return !quoted && c == wanted;
    });
}

} // namespace

void ContentLineReader::continueWith(std::string_view text, bool isLast) {
    m_rest = text;
    m_isLast = isLast;
}

// Which line break it is shows with the first one, and what stands behind it.
bool ContentLineReader::begin() {
    const std::size_t first = findIf(m_rest, isLineBreak);
    const bool isWhole = first != std::string_view::npos && first + 1 < m_rest.size();
    if (!isWhole && !m_isLast && m_rest.size() <= longestLine) {
        return false;
    }
    if (m_rest.substr(0, byteOrderMark.size()) == byteOrderMark) {
        m_rest.remove_prefix(byteOrderMark.size());
    }
    const std::size_t end = findIf(m_rest, isLineBreak);
    const bool carriageReturnAlone = end != std::string_view::npos && m_rest[end] == '\r' &&
                                     (end + 1 >= m_rest.size() || m_rest[end + 1] != '\n');
    m_lineEnd = carriageReturnAlone ? '\r' : '\n';
    m_hasBegun = true;
    return true;
}

// Past the folds; npos where it does not show yet, or is the end of the text.
std::size_t ContentLineReader::findLineEnd(std::size_t& folds) const {
    std::size_t end = m_rest.find(m_lineEnd);
    while (end != std::string_view::npos && end + 1 < m_rest.size() && isFold(m_rest[end + 1])) {
        ++folds;
        end = m_rest.find(m_lineEnd, end + 1);
    }
    const bool isCertain = end != std::string_view::npos && end + 1 < m_rest.size();
    return isCertain || m_isLast ? end : std::string_view::npos;
}

bool ContentLineReader::next(RawLine& line) {
    if ((!m_hasBegun && !begin()) || (m_isSkipping && !skipLine()) || m_rest.empty()) {
        return false;
    }
    std::size_t folds = 0;
    const std::size_t end = findLineEnd(folds);
    const bool isOpen = end == std::string_view::npos && !m_isLast;
    if (isOpen && m_rest.size() <= longestLine) {
        return false;
    }
    line.text = withoutTrailingBreaks(m_rest.substr(0, std::min(end, longestLine)));
    line.folded = folds > 0;
    line.number = m_number + 1;
    m_number += folds;
    m_isSkipping = isOpen;
    takeTo(end);
    return true;
}

// Of a line whose end does not show the last byte stays, as it may be that end.
void ContentLineReader::takeTo(std::size_t end) {
    const bool isOpen = end == std::string_view::npos && !m_isLast;
    const std::size_t kept = isOpen && !m_rest.empty() && m_rest.back() == m_lineEnd ? 1 : 0;
    m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() - kept : end + 1);
    m_number += isOpen ? 0 : 1;
}

bool ContentLineReader::skipLine() {
    std::size_t folds = 0;
    const std::size_t end = findLineEnd(folds);
    m_number += folds;
    m_isSkipping = end == std::string_view::npos && !m_isLast;
    takeTo(end);
    return !m_isSkipping;
}

std::string_view unfolded(const RawLine& line, std::string& scratch) {
    if (!line.folded) {
        return line.text;
    }
    scratch.clear();
    std::string_view rest = line.text;
    while (!rest.empty()) {
        const std::size_t end = findIf(rest, isLineBreak);
        scratch.append(rest.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        // A break within a content line stands before a fold; a stray one is dropped with it.
        rest.remove_prefix(end);
        while (!rest.empty() && isLineBreak(rest.front())) {
            rest.remove_prefix(1);
        }
        if (!rest.empty() && isFold(rest.front())) {
            rest.remove_prefix(1);
        }
    }
    return scratch;
}

std::optional<ContentLine> splitContentLine(std::string_view line) {
    const std::size_t nameEnd = findIf(line, [](char c) { return c == ':' || c == ';'; });
    if (nameEnd == std::string_view::npos || nameEnd == 0) {
        return std::nullopt;
    }
    return splitContentLine(line, nameEnd);
}

std::optional<ContentLine> splitContentLine(std::string_view line, std::size_t nameEnd) {
    ContentLine result;
    result.name = line.substr(0, nameEnd);
    if (line[nameEnd] == ':') {
        result.value = line.substr(nameEnd + 1);
        return result;
    }
    const std::string_view rest = line.substr(nameEnd + 1);
    std::size_t colon = findUnquoted(rest, ':');
    if (colon == std::string_view::npos) {
        colon = rest.find(':'); // a quote that nobody closed
    }
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    result.parameters = rest.substr(0, colon);
    result.value = rest.substr(colon + 1);
    return result;
}

std::optional<std::string_view> parameterValue(std::string_view parameters, std::string_view name) {
    while (!parameters.empty()) {
        const std::size_t end = findUnquoted(parameters, ';');
        const std::string_view parameter = parameters.substr(0, end);
        const std::size_t equals = parameter.find('=');
        if (equals != std::string_view::npos &&
            equalsIgnoringCase(parameter.substr(0, equals), name)) {
            std::string_view value = parameter.substr(equals + 1);
            value = value.substr(0, findUnquoted(value, ','));
            if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
                value = value.substr(1, value.size() - 2);
            }
            return value;
        }
        parameters.remove_prefix(end == std::string_view::npos ? parameters.size() : end + 1);
    }
    return std::nullopt;
}

} // namespace quorvel::freedesktop::ics
