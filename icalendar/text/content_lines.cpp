// Cutting a text into content lines, and a content line into name, parameters and value.
#include "icalendar/text/content_lines.h"

#include <algorithm>

#include "base/ascii_text.h"

namespace quorvel::icalendar {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t blockSize = 1024;

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

// Whether one of so many bytes is a CR without an LF behind it; one byte more is read. Not
// to stop at the first one lets the compiler compare many at a time.
bool hasLoneReturn(const char* block) {
    unsigned char found = 0;
    for (std::size_t i = 0; i < blockSize; ++i) {
        found |= static_cast<unsigned char>((block[i] == '\r' ? 0xFF : 0) &
                                            (block[i + 1] == '\n' ? 0 : 0xFF));
    }
    return found != 0;
}

// The first CR without an LF behind it, or the text's end. Few files have one; most have CR LF in
// every line, so that whole blocks can be skipped.
std::size_t findLoneReturn(std::string_view text, std::size_t from) {
    constexpr std::size_t fewReturns = 16;
    for (std::size_t passed = 0;; ++passed) {
        if (passed == fewReturns) {
            while (from + blockSize < text.size() && !hasLoneReturn(text.data() + from)) {
                from += blockSize;
            }
        }
        const std::size_t found = text.find('\r', from);
        if (found == std::string_view::npos) {
            return text.size();
        }
        if (found + 1 == text.size() || text[found + 1] != '\n') {
            return found;
        }
        from = found + 2;
    }
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

// Whether a colon stands between the hours and minutes of an offset: "(UTC+01:00)".
bool isWithinOffset(std::string_view text, std::size_t colon) {
    if (colon == std::string_view::npos || text.substr(colon).size() < 4 ||
        text[colon + 3] != ')' || !isAsciiDigit(text[colon + 1]) ||
        !isAsciiDigit(text[colon + 2])) {
        return false;
    }
    const std::size_t open = text.rfind('(', colon);
    if (open == std::string_view::npos || colon - open > 7) { // "(UTC+01"
        return false;
    }
    const std::string_view zero = text.substr(open + 1, 3);
    return equalsIgnoringCase(zero, "UTC") || equalsIgnoringCase(zero, "GMT");
}

} // namespace

void ContentLineReader::continueWith(std::string_view text, bool isLast) {
    m_text = text;
    m_at = 0;
    m_isLast = isLast;
    m_loneReturn = findLoneReturn(m_text, 0);
}

// A byte-order mark is passed over once all of it could be there.
bool ContentLineReader::begin() {
    const std::string_view first = m_text.substr(0, byteOrderMark.size());
    if (first != byteOrderMark.substr(0, first.size())) {
        return m_hasBegun = true;
    }
    if (first.size() < byteOrderMark.size()) {
        return m_hasBegun = m_isLast;
    }
    m_at = byteOrderMark.size();
    return m_hasBegun = true;
}

// In line, as it is asked for every line.
inline ContentLineReader::LineBreak ContentLineReader::findBreak(std::size_t from) {
    const std::size_t feed = m_text.substr(0, m_loneReturn).find('\n', from);
    if (feed == std::string_view::npos) {
        return breakAtLoneReturn();
    }
    const bool hasReturn = feed > from && m_text[feed - 1] == '\r';
    return {feed - (hasReturn ? 1 : 0), feed + 1};
}

ContentLineReader::LineBreak ContentLineReader::breakAtLoneReturn() {
    LineBreak found;
    if (m_loneReturn == m_text.size()) {
        return found;
    }
    found.begin = m_loneReturn;
    const std::string_view behind = m_text.substr(found.begin + 1, 2);
    if (m_isLast || (!behind.empty() && behind != "\r")) {
        found.end = found.begin + (behind == "\r\n" ? 3 : 1);
        m_loneReturn = findLoneReturn(m_text, found.end);
    }
    return found;
}

// Past the folds.
ContentLineReader::LineBreak ContentLineReader::findLineEnd(std::size_t& folds) {
    LineBreak found = findBreak(m_at);
    while (found.end < m_text.size() && isFold(m_text[found.end])) {
        ++folds;
        found = findBreak(found.end + 1);
    }
    if (found.end == m_text.size() && !m_isLast) {
        found.end = std::string_view::npos;
    }
    return found;
}

// A break that is not certain yet stays.
inline void ContentLineReader::takeTo(const LineBreak& end) {
    m_at = std::min(isOpen(end) ? end.begin : end.end, m_text.size());
    m_number += isOpen(end) ? 0 : 1;
}

bool ContentLineReader::nextAtAnyPlace(RawLine& line) {
    m_isWithinText = false;
    if ((!m_hasBegun && !begin()) || (m_isSkipping && !skipLine()) || m_at == m_text.size()) {
        return false;
    }
    std::size_t folds = 0;
    const LineBreak end = findLineEnd(folds);
    if (isOpen(end)) {
        m_isSkipping = m_text.size() - m_at > longestLine;
        if (!m_isSkipping) {
            return false;
        }
    }
    line.text = m_text.substr(m_at, end.begin - m_at);
    if (line.text.size() > longestLine) {
        line.text = withoutTrailingBreaks(line.text.substr(0, longestLine));
    }
    line.folded = folds > 0;
    line.number = m_number + 1;
    m_number += folds;
    takeTo(end);
    m_isWithinText = !m_isSkipping;
    return true;
}

bool ContentLineReader::skipLine() {
    std::size_t folds = 0;
    const LineBreak end = findLineEnd(folds);
    m_number += folds;
    m_isSkipping = isOpen(end);
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
    if (isWithinOffset(rest, colon)) { // of a name without quotes
        const std::size_t next = findUnquoted(rest.substr(colon + 1), ':');
        colon += next == std::string_view::npos ? 0 : next + 1;
    }
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

bool ContentLineSplitter::splitParameters(std::string_view line, std::size_t nameEnd,
                                          ContentLine& content) {
    const std::string_view rest = line.substr(nameEnd + 1);
    const auto isThere = [rest](const std::string& known) {
        return !known.empty() && rest.substr(0, known.size()) == known;
    };
    if (const std::string* const known = m_latest.find(isThere)) {
        const std::size_t size = known->size();
        content = {line.substr(0, nameEnd), rest.substr(0, size - 1), rest.substr(size)};
        return true;
    }
    const auto found = splitContentLine(line, nameEnd);
    if (found) {
        content = *found;
        remember(content.parameters);
    }
    return found.has_value();
}

// Neither a quote nor an offset such as "(UTC+01:00)" is in parameters without these characters.
void ContentLineSplitter::remember(std::string_view parameters) {
    constexpr std::size_t longest = 100;
    const auto isSpecial = [](char c) { return c == '"' || c == '('; };
    if (parameters.size() <= longest && findIf(parameters, isSpecial) == std::string_view::npos) {
        m_latest.add().assign(parameters).push_back(':');
    }
}

namespace {

// All of them, with their quotes.
std::optional<std::string_view> parameterValues(std::string_view parameters,
                                                std::string_view name) {
    while (!parameters.empty()) {
        const std::size_t end = findUnquoted(parameters, ';');
        const std::string_view parameter = parameters.substr(0, end);
        const std::size_t equals = parameter.find('=');
        if (equals != std::string_view::npos &&
            equalsIgnoringCase(parameter.substr(0, equals), name)) {
            return parameter.substr(equals + 1);
        }
        parameters.remove_prefix(end == std::string_view::npos ? parameters.size() : end + 1);
    }
    return std::nullopt;
}

// Without its quotes.
std::string_view firstValue(std::string_view values) {
    const std::string_view value = values.substr(0, findUnquoted(values, ','));
    const bool isQuoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

} // namespace

std::optional<std::string_view> parameterValue(std::string_view parameters, std::string_view name) {
    const auto values = parameterValues(parameters, name);
    return values ? std::optional(firstValue(*values)) : std::nullopt;
}

std::optional<std::string_view> zoneParameter(std::string_view parameters) {
    const auto values = parameterValues(parameters, "TZID");
    const bool isDisplayed = values && !values->empty() && values->front() == '(';
    return values && !isDisplayed ? std::optional(firstValue(*values)) : values;
}

} // namespace quorvel::icalendar
