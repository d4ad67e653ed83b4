// libical walks the rule; what it would take too long for, or reads wrongly, is met here.
#include "freedesktop/calendar/recurrence_expansion.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <memory>
#include <numeric>
#include <utility>

#include <libical/ical.h>

#include "freedesktop/calendar/content_lines.h"
#include "freedesktop/calendar/ics_values.h"

namespace quorvel::freedesktop::ics {
namespace {

constexpr std::size_t longestRule = 4096;
constexpr std::size_t mostStarts = 100000;
constexpr std::size_t mostIterations = 1000000;
// A step inside the library takes up to 2.5 us, and nothing can stop it in between: it walks a few
// steps at a time, more where time is left.
constexpr std::int64_t mostSteps = 500000;
constexpr std::int64_t fewestStepsAtOnce = 256;
constexpr std::int64_t mostStepsAtOnce = 4096;
constexpr std::int64_t firstYear = 1;
constexpr std::int64_t lastYear = 9999;

struct FreeIterator {
    void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};
using Iterator = std::unique_ptr<icalrecur_iterator, FreeIterator>;

// The library's own way to say that something is wrong is to print and abort.
void keepLibraryQuiet() {
    static const bool done = [] {
        icalerror_set_errors_are_fatal(0);
        for (int error = ICAL_NO_ERROR; error <= ICAL_UNKNOWN_ERROR; ++error) {
            icalerror_set_error_state(static_cast<icalerrorenum>(error), ICAL_ERROR_NONFATAL);
        }
        return true;
    }();
    (void)done;
}

// A rule's parts as far as the guards need them. Text is the rule without UNTIL and COUNT.
struct RuleParts {
    std::string text;
    std::string frequency;
    std::int64_t interval = 1;
    std::optional<std::int64_t> count;
    bool hasBy = false;
    bool hasSetPosition = false;
    std::string problem;
};

std::string upperCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return result;
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(value) : std::nullopt;
}

void readPart(RuleParts& parts, const std::string& key, const std::string& value) {
    if (key == "UNTIL") {
        return;
    }
    if (key == "COUNT") {
        parts.count = wholeNumber(value);
        if (!parts.count || *parts.count == 0) {
            parts.problem = "COUNT is no positive number";
        } else if (*parts.count < 0) {
            parts.count = std::nullopt; // some write -1 where they mean none
        }
        return;
    }
    if (key == "INTERVAL") {
        const auto interval = wholeNumber(value);
        constexpr std::int64_t largest = 32767;
        if (!interval || *interval < 1 || *interval > largest) {
            parts.problem = "INTERVAL is out of range";
            return;
        }
        parts.interval = *interval;
    } else if (key == "FREQ") {
        parts.frequency = value;
    } else if (key == "BYSETPOS") {
        parts.hasSetPosition = true;
    } else if (key.substr(0, 2) == "BY") {
        parts.hasBy = true;
    }
    parts.text += (parts.text.empty() ? "" : ";") + key + "=" + value;
}

RuleParts readParts(std::string_view rule) {
    RuleParts parts;
    if (rule.size() > longestRule) {
        parts.problem = "it is too long";
        return parts;
    }
    while (!rule.empty()) {
        const std::size_t end = rule.find(';');
        const std::string_view part = trimmed(rule.substr(0, end));
        const std::size_t equals = part.find('=');
        if (equals != std::string_view::npos) {
            readPart(parts, upperCase(trimmed(part.substr(0, equals))),
                     upperCase(trimmed(part.substr(equals + 1))));
        } else if (!part.empty()) {
            parts.problem = "a part of it has no value";
        }
        rule.remove_prefix(end == std::string_view::npos ? rule.size() : end + 1);
    }
    if (parts.frequency.empty()) {
        parts.problem = "FREQ is missing";
    } else if (parts.hasSetPosition && !parts.hasBy) {
        parts.problem = "BYSETPOS stands alone";
    }
    return parts;
}

// Seconds from one step to the next; 0 for months and years, of which there are never many.
std::int64_t stepOf(const RuleParts& parts) {
    static constexpr std::pair<std::string_view, std::int64_t> units[] = {
        {"SECONDLY", 1}, {"MINUTELY", 60}, {"HOURLY", 3600}, {"DAILY", 86400}, {"WEEKLY", 604800}};
    for (const auto& [frequency, seconds] : units) {
        if (parts.frequency == frequency) {
            return parts.interval * seconds;
        }
    }
    return 0;
}

// Seconds between the occurrences of a rule of days or weeks without BY parts; 0 for other rules.
std::int64_t plainStepOf(const RuleParts& parts) {
    const bool isPlain =
        !parts.hasBy && (parts.frequency == "DAILY" || parts.frequency == "WEEKLY");
    return isPlain ? stepOf(parts) : 0;
}

icaltimetype icalTime(const CivilTime& time, bool isDate) {
    icaltimetype result = icaltime_null_time();
    result.year = time.year;
    result.month = time.month;
    result.day = time.day;
    result.is_date = isDate ? 1 : 0;
    if (!isDate) {
        result.hour = time.hour;
        result.minute = time.minute;
        result.second = time.second;
    }
    return result;
}

CivilTime civilTime(const icaltimetype& time) {
    if (time.is_date != 0) {
        return {time.year, time.month, time.day, 0, 0, 0};
    }
    return {time.year, time.month, time.day, time.hour, time.minute, time.second};
}

bool isSane(const icaltimetype& time) {
    return time.year >= firstYear && time.year <= lastYear && time.month >= 1 && time.month <= 12 &&
           time.day >= 1 && time.day <= 31;
}

short* endOfList(short* list, std::size_t size) {
    return std::find(list, list + size, static_cast<short>(ICAL_RECURRENCE_ARRAY_MAX));
}

// The library walks its lists in the order in which they stand.
template <std::size_t Size>
void sortList(short (&list)[Size]) {
    short* end = endOfList(list, Size);
    std::sort(list, end);
    short* last = std::unique(list, end);
    std::fill(last, end, static_cast<short>(ICAL_RECURRENCE_ARRAY_MAX));
}

template <std::size_t Size>
void dropRepeated(short (&list)[Size]) {
    short* const end = endOfList(list, Size);
    short* last = list;
    for (short* it = list; it != end; ++it) {
        if (std::find(list, last, *it) == last) {
            *last++ = *it;
        }
    }
    std::fill(last, end, static_cast<short>(ICAL_RECURRENCE_ARRAY_MAX));
}

short weekdayOf(const CivilTime& time) {
    const std::int64_t days = civilDays(time);
    return static_cast<short>((days % 7 + 7 + 4) % 7 + 1); // 1970-01-01 was a Thursday; 1 is Sunday
}

// Rewrites what the library reads wrongly where another wording means the same.
void mend(icalrecurrencetype& rule, const CivilTime& start) {
    sortList(rule.by_second);
    sortList(rule.by_minute);
    sortList(rule.by_hour);
    dropRepeated(rule.by_day);
    const auto absent = static_cast<short>(ICAL_RECURRENCE_ARRAY_MAX);
    if (rule.freq == ICAL_YEARLY_RECURRENCE && rule.by_week_no[0] != absent &&
        rule.by_day[0] == absent && rule.by_month_day[0] == absent &&
        rule.by_year_day[0] == absent) {
        rule.by_day[0] = weekdayOf(start);
        rule.by_day[1] = absent;
    }
}

struct FreeText {
    void operator()(char* text) const { icalmemory_free_buffer(text); }
};

constexpr const char* unreadable = "its parts do not go together";

class Expansion {
public:
    explicit Expansion(const RecurrenceRequest& request)
        : m_request(request)
        , m_start(civilSeconds(request.start))
        , m_from(civilSeconds(request.from))
        , m_to(civilSeconds(request.to)) {
        if (request.until) {
            m_to = std::min(m_to, civilSeconds(*request.until));
        }
    }

    RecurrenceStarts run() {
        if (m_request.startCounts) {
            keep(m_start);
            m_counted = 1;
        }
        m_parts = readParts(m_request.rule);
        if (!m_parts.problem.empty()) {
            m_result.problem = m_parts.problem;
        } else if (m_to >= m_start) {
            const std::int64_t step = plainStepOf(m_parts);
            step != 0 ? walkPlain(step) : walk();
        }
        std::sort(m_seconds.begin(), m_seconds.end());
        m_seconds.erase(std::unique(m_seconds.begin(), m_seconds.end()), m_seconds.end());
        for (const std::int64_t seconds : m_seconds) {
            m_result.starts.push_back(civilFromSeconds(seconds));
        }
        return std::move(m_result);
    }

private:
    // The most frequent rules by far; simple sums answer them many times faster than the library.
    void walkPlain(std::int64_t step) {
        std::int64_t seconds = m_start + (canJump() ? (m_from - m_start) / step * step : 0);
        if (seconds == m_start && m_request.startCounts) {
            seconds += step;
        }
        for (; seconds <= m_to; seconds += step) {
            if (m_parts.count && m_counted >= *m_parts.count) {
                return;
            }
            if (!m_request.exists || m_request.exists(civilFromSeconds(seconds))) {
                ++m_counted;
                keep(seconds);
            }
            if (m_seconds.size() >= mostStarts || ++m_iterations >= mostIterations) {
                m_result.problem = "it has too many occurrences";
                return;
            }
        }
    }

    void walk() {
        keepLibraryQuiet();
        icalrecurrencetype rule = icalrecurrencetype_from_string(m_parts.text.c_str());
        const std::unique_ptr<char, FreeText> scale(rule.rscale); // nobody else frees it
        if (rule.freq == ICAL_NO_RECURRENCE) {
            m_result.problem = "it cannot be read";
            return;
        }
        mend(rule, m_request.start);
        if (const std::int64_t step = stepOf(m_parts)) {
            walkInPieces(rule, step);
        } else {
            walkWhole(rule);
        }
    }

    bool canJump() const { return !m_parts.count && m_from > m_start; }

    void walkWhole(icalrecurrencetype& rule) {
        const Iterator iterator = makeIterator(rule, m_start, m_to);
        if (!iterator) {
            return;
        }
        if (canJump() && icalrecur_iterator_set_start(
                             iterator.get(), icalTime(m_request.from, m_request.wholeDays)) == 0) {
            m_result.problem = unreadable;
            return;
        }
        iterate(iterator.get(), m_start, m_to);
    }

    // Each piece starts whole steps after the first occurrence, and where its time of day or its
    // minutes are the same, so that it is the same rule to the library.
    void walkInPieces(icalrecurrencetype& rule, std::int64_t step) {
        const std::int64_t like = rule.freq == ICAL_SECONDLY_RECURRENCE ? 3600 : 86400;
        const std::int64_t shortest = std::lcm(step, like);
        std::int64_t begin = m_start;
        if (canJump()) {
            begin += (m_from - m_start) / shortest * shortest;
        }
        std::int64_t stepsAtOnce = fewestStepsAtOnce;
        std::int64_t steps = 0;
        while (begin <= m_to && m_goesOn) {
            if (steps > mostSteps) {
                m_result.problem = "it takes too many steps";
                return;
            }
            if (steps > 0 && isLate()) {
                return;
            }
            const std::int64_t pieces = std::max<std::int64_t>(stepsAtOnce * step / shortest, 1);
            const std::int64_t last = std::min(m_to, begin + pieces * shortest - 1);
            const Iterator iterator = makeIterator(rule, begin, last);
            if (!iterator) {
                return;
            }
            iterate(iterator.get(), begin, last);
            begin += pieces * shortest;
            steps += pieces * shortest / step;
            stepsAtOnce = std::min(2 * stepsAtOnce, mostStepsAtOnce);
        }
    }

    Iterator makeIterator(icalrecurrencetype& rule, std::int64_t begin, std::int64_t end) {
        rule.until = icalTime(civilFromSeconds(end), m_request.wholeDays);
        Iterator iterator(
            icalrecur_iterator_new(rule, icalTime(civilFromSeconds(begin), m_request.wholeDays)));
        if (!iterator) {
            m_result.problem = unreadable;
        }
        return iterator;
    }

    bool isLate() {
        if (std::chrono::steady_clock::now() <= m_request.deadline) {
            return false;
        }
        m_result.problem = "it takes too long";
        return true;
    }

    // What there is from the one reading to the other. No more is to come where it does not go on.
    void iterate(icalrecur_iterator* iterator, std::int64_t begin, std::int64_t end) {
        while (true) {
            if (m_parts.count && m_counted >= *m_parts.count) {
                m_goesOn = false;
                return;
            }
            const icaltimetype next = icalrecur_iterator_next(iterator);
            if (icaltime_is_null_time(next) != 0 || !isSane(next)) {
                return;
            }
            const CivilTime time = civilTime(next);
            const std::int64_t seconds = civilSeconds(time);
            if (seconds > end) {
                return;
            }
            const bool isStart = seconds == m_start && m_request.startCounts;
            if (seconds >= begin && !isStart && (!m_request.exists || m_request.exists(time))) {
                ++m_counted;
                keep(seconds);
            }
            if (m_seconds.size() >= mostStarts || ++m_iterations >= mostIterations) {
                m_result.problem = "it has too many occurrences";
            }
            if (!m_result.problem.empty() || isLate()) {
                m_goesOn = false;
                return;
            }
        }
    }

    void keep(std::int64_t seconds) {
        if (seconds >= m_from && seconds <= m_to) {
            m_seconds.push_back(seconds);
        }
    }

    const RecurrenceRequest& m_request;
    std::int64_t m_start;
    std::int64_t m_from;
    std::int64_t m_to;
    RuleParts m_parts;
    std::int64_t m_counted = 0;
    std::size_t m_iterations = 0;
    bool m_goesOn = true;
    std::vector<std::int64_t> m_seconds;
    RecurrenceStarts m_result;
};

} // namespace

RecurrenceStarts expandRecurrence(const RecurrenceRequest& request) {
    return Expansion(request).run();
}

} // namespace quorvel::freedesktop::ics
