// The changes of a defined zone are listed once, by the same bounded expansion as events have.
#include "icalendar/expansion/defined_time_zone.h"

#include <algorithm>

#include "icalendar/recurrence/recurrence.h"

namespace quorvel::icalendar {
namespace {

constexpr CivilTime firstLocalTime{1900, 1, 1, 0, 0, 0};
constexpr CivilTime lastLocalTime{2100, 12, 31, 23, 59, 59};
constexpr std::size_t mostChanges = 20000;
constexpr std::int64_t mostSteps = 1'000'000;

struct Change {
    std::int64_t at = 0; // seconds since 1970
    int before = 0;      // seconds east of UTC
    int after = 0;
};

class DefinedTimeZone final : public TimeZone {
public:
    DefinedTimeZone(std::string name, std::vector<Change> changes)
        : m_name(std::move(name))
        , m_changes(std::move(changes)) {}

    const std::string& identifier() const override { return m_name; }

    int offsetAt(std::int64_t instant) const override {
        const auto next = std::upper_bound(
            m_changes.begin(), m_changes.end(), instant,
            [](std::int64_t value, const Change& change) { return value < change.at; });
        return next == m_changes.begin() ? next->before : std::prev(next)->after;
    }

    std::int64_t instant(const CivilTime& localTime) const override {
        const std::int64_t local = civilSeconds(localTime);
        int offset = m_changes.front().before;
        for (const Change& change : m_changes) {
            // In a gap the offset before it holds on, which moves the local time forward; of two
            // instants the change makes the latter.
            if (local < change.at + change.after) {
                break;
            }
            offset = change.after;
        }
        return local - offset;
    }

private:
    std::string m_name;
    std::vector<Change> m_changes; // sorted; never empty
};

// UNTIL in UTC is read with the offset before the change.
std::optional<std::int64_t> untilLocalTime(const std::string& rule, int offsetFrom) {
    const auto until = untilOf(rule);
    if (!until) {
        return std::nullopt;
    }
    return civilSeconds(until->civil) + (until->isUtc ? offsetFrom : 0);
}

void addChanges(const ZoneObservance& observance, std::int64_t& steps,
                std::vector<Change>& changes) {
    const auto add = [&](std::int64_t localTime) {
        changes.push_back(
            {localTime - observance.offsetFrom, observance.offsetFrom, observance.offsetTo});
    };
    add(civilSeconds(observance.start));
    for (const CivilTime& date : observance.dates) {
        add(civilSeconds(date));
    }
    for (const std::string& text : observance.rules) {
        const auto rule = parseRecurrenceRule(text);
        if (!rule || changes.size() > mostChanges || steps > mostSteps) {
            continue;
        }
        RecurrenceRequest request(*rule);
        request.start = civilSeconds(observance.start);
        request.until = untilLocalTime(text, observance.offsetFrom);
        request.from = civilSeconds(firstLocalTime);
        request.to = civilSeconds(lastLocalTime);
        const RecurrenceStarts starts = expandRecurrence(request);
        steps += starts.stepsSpent;
        for (const std::int64_t localTime : starts.localTimes) {
            add(localTime);
        }
    }
}

} // namespace

std::shared_ptr<const TimeZone> makeDefinedTimeZone(const ZoneDefinition& definition) {
    std::int64_t steps = 0; // of all its rules
    std::vector<Change> changes;
    for (const ZoneObservance& observance : definition.observances) {
        addChanges(observance, steps, changes);
    }
    if (changes.empty()) {
        return nullptr;
    }
    const auto earlier = [](const Change& a, const Change& b) { return a.at < b.at; };
    std::stable_sort(changes.begin(), changes.end(), earlier);
    const auto sameInstant = [](const Change& a, const Change& b) { return a.at == b.at; };
    changes.erase(std::unique(changes.begin(), changes.end(), sameInstant), changes.end());
    return std::make_shared<DefinedTimeZone>(definition.name.name, std::move(changes));
}

} // namespace quorvel::icalendar
