#include "icalendar/recurrence/recurrence_rule.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "base/ascii_text.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

constexpr std::size_t longestRule = 4096;
constexpr std::size_t mostPositions = 1000;
constexpr std::int64_t greatestInterval = 1'000'000'000;

constexpr std::pair<std::string_view, Frequency> frequencyNames[] = {
    {"SECONDLY", Frequency::secondly}, {"MINUTELY", Frequency::minutely},
    {"HOURLY", Frequency::hourly},     {"DAILY", Frequency::daily},
    {"WEEKLY", Frequency::weekly},     {"MONTHLY", Frequency::monthly},
    {"YEARLY", Frequency::yearly}};

constexpr std::string_view weekdayNames[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

// A plus sign is allowed.
std::optional<std::int64_t> wholeNumber(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(value) : std::nullopt;
}

// The text before the separator, which is taken off together with it.
std::string_view takePart(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view part = trimmed(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

template <class Add>
bool readList(std::string_view text, Add add) {
    if (text.empty()) {
        return false;
    }
    while (!text.empty()) {
        if (!add(takePart(text, ','))) {
            return false;
        }
    }
    return true;
}

template <std::size_t Size>
bool readNumbers(std::string_view text, std::int64_t least, std::bitset<Size>& numbers) {
    return readList(text, [&](std::string_view part) {
        const auto number = wholeNumber(part);
        if (!number || *number < least || *number >= static_cast<std::int64_t>(Size)) {
            return false;
        }
        numbers.set(static_cast<std::size_t>(*number));
        return true;
    });
}

template <std::size_t Greatest>
bool addOrdinal(std::optional<std::int64_t> number, Ordinals<Greatest>& ordinals) {
    constexpr auto greatest = static_cast<std::int64_t>(Greatest);
    if (!number || *number == 0 || *number > greatest || *number < -greatest) {
        return false;
    }
    (*number > 0 ? ordinals.front : ordinals.back)
        .set(static_cast<std::size_t>(*number > 0 ? *number : -*number));
    return true;
}

template <std::size_t Greatest>
bool readOrdinals(std::string_view text, Ordinals<Greatest>& ordinals) {
    return readList(text,
                    [&](std::string_view part) { return addOrdinal(wholeNumber(part), ordinals); });
}

std::optional<int> weekdayNamed(std::string_view name) {
    const auto* const found = std::find(std::begin(weekdayNames), std::end(weekdayNames), name);
    return found == std::end(weekdayNames)
               ? std::nullopt
               : std::optional(static_cast<int>(found - std::begin(weekdayNames)) + 1);
}

// "MO", "-1SU".
bool readWeekday(std::string_view text, RecurrenceRule& rule) {
    if (text.size() < 2) {
        return false;
    }
    const auto weekday = weekdayNamed(text.substr(text.size() - 2));
    if (!weekday) {
        return false;
    }
    const auto index = static_cast<std::size_t>(*weekday);
    const std::string_view number = trimmed(text.substr(0, text.size() - 2));
    if (number.empty()) {
        rule.weekdaysWithoutNumber.set(index);
        return true;
    }
    rule.hasNumberedWeekdays = true;
    return addOrdinal(wholeNumber(number), rule.numberedWeekdays[index]);
}

bool readPositions(std::string_view text, std::vector<int>& positions) {
    constexpr std::int64_t greatest = 366;
    return readList(text, [&](std::string_view part) {
        const auto number = wholeNumber(part);
        if (!number || *number == 0 || *number > greatest || *number < -greatest ||
            positions.size() >= mostPositions) {
            return false;
        }
        positions.push_back(static_cast<int>(*number));
        return true;
    });
}

bool readFrequency(std::string_view text, std::optional<Frequency>& frequency) {
    for (const auto& [name, value] : frequencyNames) {
        if (name == text) {
            frequency = value;
            return true;
        }
    }
    return false;
}

bool readInterval(std::string_view text, std::int64_t& interval) {
    const auto number = wholeNumber(text);
    interval = number.value_or(0);
    return interval >= 1 && interval <= greatestInterval;
}

// Some programs write -1 where they mean none.
bool readCount(std::string_view text, std::optional<std::int64_t>& count) {
    count = wholeNumber(text);
    const bool isUsable = count && *count != 0;
    if (isUsable && *count < 0) {
        count = std::nullopt;
    }
    return isUsable;
}

bool readPart(std::string_view key, std::string_view value, RecurrenceRule& rule,
              std::optional<Frequency>& frequency) {
    if (key == "FREQ") {
        return readFrequency(value, frequency);
    }
    if (key == "INTERVAL") {
        return readInterval(value, rule.interval);
    }
    if (key == "COUNT") {
        return readCount(value, rule.count);
    }
    if (key == "UNTIL") {
        rule.hasUntil = true;
        return true;
    }
    if (key == "BYDAY") {
        return readList(value, [&](std::string_view part) { return readWeekday(part, rule); });
    }
    if (key == "BYMONTHDAY") {
        return readOrdinals(value, rule.monthDays);
    }
    if (key == "BYMONTH") {
        return readNumbers(value, 1, rule.months);
    }
    if (key == "BYSETPOS") {
        return readPositions(value, rule.positions);
    }
    if (key == "BYHOUR") {
        return readNumbers(value, 0, rule.hours);
    }
    if (key == "BYMINUTE") {
        return readNumbers(value, 0, rule.minutes);
    }
    if (key == "BYSECOND") {
        return readNumbers(value, 0, rule.seconds);
    }
    if (key == "BYYEARDAY") {
        return readOrdinals(value, rule.yearDays);
    }
    if (key == "BYWEEKNO") {
        return readOrdinals(value, rule.weeks);
    }
    if (key == "WKST") {
        const auto weekday = weekdayNamed(value);
        rule.weekStart = weekday.value_or(rule.weekStart);
        return weekday.has_value();
    }
    return key != "RSCALE" || value == "GREGORIAN";
}

} // namespace

Result<RecurrenceRule, RuleError> parseRecurrenceRule(std::string_view text) {
    if (text.size() > longestRule) {
        return RuleError{translatable("it is too long")};
    }
    const std::string upper = asciiUpperCase(text);
    std::string_view rest = upper;
    RecurrenceRule rule;
    std::optional<Frequency> frequency;
    while (!rest.empty()) {
        const std::string_view part = takePart(rest, ';');
        if (part.empty()) {
            continue;
        }
        const std::size_t equals = part.find('=');
        if (equals == std::string_view::npos) {
            return RuleError{translatable("a part of it has no value")};
        }
        const std::string_view key = trimmed(part.substr(0, equals));
        if (!readPart(key, trimmed(part.substr(equals + 1)), rule, frequency)) {
            return RuleError{{translatable("its {1} cannot be used"),
                              {TranslatableText::verbatim(std::string(key))}}};
        }
    }
    if (!frequency) {
        return RuleError{translatable("FREQ is missing")};
    }
    rule.frequency = *frequency;
    if (!rule.positions.empty() && !rule.hasDateParts() && !rule.hasTimeParts()) {
        return RuleError{translatable("BYSETPOS stands alone")};
    }
    return rule;
}

} // namespace quorvel::icalendar
