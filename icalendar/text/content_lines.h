// The content lines of an iCalendar text (RFC 5545 3.1): separated, unfolded, split into name,
// parameters and value. Only folded lines are copied; the others are views of the text.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "icalendar/text/latest_few.h"

namespace quorvel::icalendar {

// At the beginning of a line: it continues the line before.
inline bool isFold(char c) {
    return c == ' ' || c == '\t';
}

// One content line with its continuation lines, line breaks between them included.
struct RawLine {
    std::string_view text;
    bool folded = false;
    std::size_t number = 0; // of its first line in the file, from 1
};

// Line breaks are LF, CR LF, CR CR LF or CR alone, each line for itself. A byte-order mark of UTF-8
// is passed over. What a line has beyond four megabytes, folds included, is left out.
class ContentLineReader {
public:
    ContentLineReader() = default;
    // A whole text at once. The text must outlive the reader and its lines.
    explicit ContentLineReader(std::string_view text) { continueWith(text, true); }

    // The next piece of a text; it begins with what remained of the piece before.
    void continueWith(std::string_view text, bool isLast);
    // The part of the piece of which no line was made yet.
    std::string_view remaining() const { return m_text.substr(m_at); }
    // With their folds.
    std::size_t linesTaken() const { return m_number; }

    // False at the end of the text, and where the line's end is in a piece to come, which has to be
    // given before the next call.
    bool next(RawLine& line) { return nextWithoutFold(line) || nextAtAnyPlace(line); }

private:
    static constexpr std::size_t longestLine = std::size_t{4} << 20U; // bytes

    // Places in the piece. Without an end it does not show yet which break it is, or whether a fold
    // follows; without a beginning there is none.
    struct LineBreak {
        std::size_t begin = std::string_view::npos;
        std::size_t end = std::string_view::npos;
    };

    // In line, as nearly every line is one of these. False where the line has a fold, is too long,
    // or is at the beginning or end of the piece.
    bool nextWithoutFold(RawLine& line) {
        if (!m_isWithinText) {
            return false;
        }
        const std::size_t feed = m_text.substr(0, m_loneReturn).find('\n', m_at);
        const std::size_t end = feed + 1; // 0 where there is none
        const std::size_t size = feed - m_at;
        if (end == 0 || end >= m_text.size() || size > longestLine || isFold(m_text[end])) {
            return false;
        }
        const bool hasReturn = size > 0 && m_text[feed - 1] == '\r';
        line = {{m_text.data() + m_at, size - (hasReturn ? 1 : 0)}, false, ++m_number};
        m_at = end;
        return true;
    }

    bool nextAtAnyPlace(RawLine& line);
    bool begin();
    LineBreak findBreak(std::size_t from);
    LineBreak breakAtLoneReturn();
    LineBreak findLineEnd(std::size_t& folds);
    bool isOpen(const LineBreak& end) const {
        return end.end == std::string_view::npos && !m_isLast;
    }
    void takeTo(const LineBreak& end);
    bool skipLine();

    std::string_view m_text; // the piece
    std::size_t m_at = 0;    // up to which lines were made of it
    bool m_isLast = false;
    bool m_hasBegun = false;
    bool m_isSkipping = false;    // the rest of a line that is too long
    bool m_isWithinText = false;  // has begun, and is not skipping
    std::size_t m_loneReturn = 0; // the next CR without an LF behind it, or the piece's end
    std::size_t m_number = 0;     // of the lines taken
};

// The line without its folds: the line's own bytes where it has none, else in the scratch string.
std::string_view unfolded(const RawLine& line, std::string& scratch);

struct ContentLine {
    std::string_view name;
    std::string_view parameters; // without the first semicolon
    std::string_view value;
};

// Absent where there is no colon behind a name.
std::optional<ContentLine> splitContentLine(std::string_view line);
// Of a line whose name is known to end at a colon or semicolon there.
std::optional<ContentLine> splitContentLine(std::string_view line, std::size_t nameEnd);

// As splitContentLine(), for many lines: the latest parameters are recognised, as nearly all times
// of a calendar are in a few zones.
class ContentLineSplitter {
public:
    // False where there is no colon behind the name.
    bool split(std::string_view line, std::size_t nameEnd, ContentLine& content) {
        if (line[nameEnd] != ':') {
            return splitParameters(line, nameEnd, content);
        }
        // Without substr(), whose checks are one in a hundred instructions of reading a calendar.
        content = {
            {line.data(), nameEnd}, {}, {line.data() + nameEnd + 1, line.size() - nameEnd - 1}};
        return true;
    }

private:
    bool splitParameters(std::string_view line, std::size_t nameEnd, ContentLine& content);
    void remember(std::string_view parameters);

    // With the colon behind them, and only such as end at their first colon whatever follows.
    LatestFew<std::string> m_latest;
};

// The first value of a parameter, without its quotes. Names are compared regardless of case.
std::optional<std::string_view> parameterValue(std::string_view parameters, std::string_view name);

// TZID. Without quotes a name such as "(UTC+01:00) Amsterdam, Berlin" is taken with its commas.
std::optional<std::string_view> zoneParameter(std::string_view parameters);

// The second text is in upper case. In line, as nearly every line calls it.
inline bool equalsIgnoringCase(std::string_view text, std::string_view upperCase) {
    if (text.size() != upperCase.size()) {
        return false;
    }
    if (text == upperCase) { // as nearly all calendars write names
        return true;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c != upperCase[i] &&
            (c < 'a' || c > 'z' || static_cast<char>(c - 'a' + 'A') != upperCase[i])) {
            return false;
        }
    }
    return true;
}

} // namespace quorvel::icalendar
