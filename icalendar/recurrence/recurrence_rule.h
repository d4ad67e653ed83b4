// A recurrence rule as a calendar writes it (RFC 5545 3.3.10), parsed into sets of numbers.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::icalendar {

enum class Frequency : std::uint8_t { secondly, minutely, hourly, daily, weekly, monthly, yearly };

// Numbers counted from the front (1 is the first) and from the back (-1 is the last).
template <std::size_t Greatest>
struct Ordinals {
    std::bitset<Greatest + 1> front;
    std::bitset<Greatest + 1> back;

    bool any() const { return front.any() || back.any(); }
    // The number-th of so many.
    bool has(std::int64_t number, std::int64_t many) const {
        return front[static_cast<std::size_t>(number)] ||
               back[static_cast<std::size_t>(many - number + 1)];
    }
};

constexpr int weekdays = 7;

// A part that is absent is an empty set. What instant UNTIL means is a matter of zones, and not of
// the rule alone.
struct RecurrenceRule {
    Frequency frequency = Frequency::daily;
    std::int64_t interval = 1;         // at least 1
    std::optional<std::int64_t> count; // at least 1
    bool hasUntil = false;
    int weekStart = 2;       // 1 is Sunday
    std::bitset<61> seconds; // 60 is a leap second, which no wall clock here shows
    std::bitset<60> minutes;
    std::bitset<24> hours;
    std::bitset<13> months;
    std::bitset<weekdays + 1> weekdaysWithoutNumber; // 1 is Sunday
    std::array<Ordinals<53>, weekdays + 1> numberedWeekdays;
    bool hasNumberedWeekdays = false;
    Ordinals<31> monthDays;
    Ordinals<366> yearDays;
    Ordinals<53> weeks;
    std::vector<int> positions; // within one period; negative ones from its end

    bool hasWeekdays() const { return weekdaysWithoutNumber.any() || hasNumberedWeekdays; }
    bool hasDateParts() const {
        return hasWeekdays() || months.any() || monthDays.any() || yearDays.any() || weeks.any();
    }
    bool hasTimeParts() const { return hours.any() || minutes.any() || seconds.any(); }
};

struct RuleError {
    TranslatableText what; // such as "FREQ is missing"
};

// Upper or lower case, parts in any order; unknown parts are skipped.
Result<RecurrenceRule, RuleError> parseRecurrenceRule(std::string_view text);

} // namespace quorvel::icalendar
