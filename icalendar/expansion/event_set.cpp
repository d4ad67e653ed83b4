// Nearly all events have a UID of their own, so that versions are sought among the few others only.
#include "icalendar/expansion/event_set.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <tuple>

#include "icalendar/expansion/bounds.h"

namespace quorvel::icalendar {

namespace {

std::int64_t overriddenLocalTime(const EventReference& reference) {
    return reference.event->recurrenceId->localTime;
}

using Files = std::vector<std::shared_ptr<LoadedFile>>;

// In the files' order, by the number of each among all events.
template <typename Use>
void forEachEvent(const Files& files, Use use) {
    std::uint32_t number = 0;
    for (std::uint32_t fileNumber = 0; fileNumber < files.size(); ++fileNumber) {
        LoadedFile& file = *files[fileNumber];
        for (std::uint32_t event = 0; event < file.ics.events.size(); ++event) {
            use(number++, EventReference{&file, &file.ics.events[event]},
                EventEntry{file.ics.events[event].firstDay, file.ics.events[event].lastDay,
                           fileNumber, event});
        }
    }
}

// Of the UIDs of all events, by their numbers.
std::vector<std::uint32_t> uidHashes(const Files& files, std::size_t count) {
    std::vector<std::uint32_t> hashes;
    hashes.reserve(count);
    forEachEvent(files, [&](std::uint32_t, const EventReference& one, const EventEntry&) {
        const std::string_view uid = one.file->ics.slice(one.event->uid);
        hashes.push_back(static_cast<std::uint32_t>(std::hash<std::string_view>()(uid)));
    });
    return hashes;
}

// A set of hashes that may take others for its own, but few of them: one bit for several hashes
// stays in the processor's cache where the hashes themselves would not.
class HashFilter {
public:
    explicit HashFilter(std::size_t hashes)
        : m_bits(std::bit_ceil(hashes * bitsPerHash + 1)) {}

    void insert(std::uint32_t hash) { m_bits[place(hash)] = true; }
    bool mayContain(std::uint32_t hash) const { return m_bits[place(hash)]; }

private:
    static constexpr std::size_t bitsPerHash = 16;

    std::size_t place(std::uint32_t hash) const { return hash & (m_bits.size() - 1); }

    std::vector<bool> m_bits;
};

// Which of the main events, by their numbers, share a UID with another, or may do so: by the UIDs'
// hashes, as nearly all have one of their own.
std::vector<bool> findContested(const Files& files, const std::vector<std::uint32_t>& hashes) {
    HashFilter once(hashes.size());
    HashFilter again(hashes.size());
    forEachEvent(files, [&](std::uint32_t number, const EventReference& one, const EventEntry&) {
        if (!one.event->recurrenceId) {
            (once.mayContain(hashes[number]) ? again : once).insert(hashes[number]);
        }
    });
    std::vector<bool> isContested(hashes.size());
    forEachEvent(files, [&](std::uint32_t number, const EventReference& one, const EventEntry&) {
        isContested[number] = !one.event->recurrenceId && again.mayContain(hashes[number]);
    });
    return isContested;
}

// Of the main events with one UID the newest version first, and of those that begin alike the last
// one in the files.
struct Version {
    std::string_view uid;
    const IcsEvent* event = nullptr;
    std::uint32_t number = 0; // among all events

    bool operator<(const Version& other) const {
        if (uid != other.uid) {
            return uid < other.uid;
        }
        if (IcsFile::isNewer(*event, *other.event) || IcsFile::isNewer(*other.event, *event)) {
            return IcsFile::isNewer(*event, *other.event);
        }
        return std::tuple(event->start.localTime, event->start.kind, other.number) <
               std::tuple(other.event->start.localTime, other.event->start.kind, number);
    }
    bool beginsLike(const Version& other) const {
        return event->start.localTime == other.event->start.localTime &&
               event->start.kind == other.event->start.kind;
    }
};

// Which of the events, by their numbers, give way to another version of themselves.
std::vector<bool> findSuperseded(const Files& files, const std::vector<std::uint32_t>& hashes) {
    const std::vector<bool> isContested = findContested(files, hashes);
    std::vector<Version> versions;
    versions.reserve(
        static_cast<std::size_t>(std::count(isContested.begin(), isContested.end(), true)));
    forEachEvent(files, [&](std::uint32_t number, const EventReference& one, const EventEntry&) {
        if (isContested[number]) {
            versions.push_back({one.file->ics.slice(one.event->uid), one.event, number});
        }
    });
    std::sort(versions.begin(), versions.end());
    std::vector<bool> isSuperseded(hashes.size());
    const Version* newest = nullptr; // of the same UID
    const Version* before = nullptr;
    for (const Version& one : versions) {
        if (newest == nullptr || newest->uid != one.uid) {
            newest = &one;
        } else {
            isSuperseded[one.number] =
                IcsFile::isNewer(*newest->event, *one.event) || before->beginsLike(one);
        }
        before = &one;
    }
    return isSuperseded;
}

bool overrideTheSame(const EventReference& a, const EventReference& b) {
    const EventTime& first = *a.event->recurrenceId;
    const EventTime& second = *b.event->recurrenceId;
    const auto zoneOf = [](const EventReference& one, const EventTime& time) {
        return time.kind == TimeKind::zoned
                   ? std::string_view(one.file->ics.zoneNames[time.zone].name)
                   : std::string_view();
    };
    return first.localTime == second.localTime && first.kind == second.kind &&
           zoneOf(a, first) == zoneOf(b, second);
}

void sortOverrides(OverrideSet& set) {
    std::reverse(set.all.begin(), set.all.end()); // of equals the last one is the newest
    std::stable_sort(
        set.all.begin(), set.all.end(), [](const EventReference& a, const EventReference& b) {
            const std::int64_t first = overriddenLocalTime(a);
            const std::int64_t second = overriddenLocalTime(b);
            return first != second ? first < second : IcsFile::isNewer(*a.event, *b.event);
        });
    for (const EventReference& one : set.all) {
        const bool isWanted = one.event->thisAndFuture &&
                              (set.future.empty() || !overrideTheSame(set.future.back(), one));
        if (isWanted && set.future.size() < mostFutureOverrides) {
            set.future.push_back(one);
        } else if (isWanted) {
            set.hasMoreFuture = true;
        }
    }
}

// Gives the overrides their main event. Occurrences behind an override of THISANDFUTURE may move
// with it out of the days that the main event has.
void followMainEvent(const EventReference& mainEvent, Overrides& overrides, EventEntry& entry) {
    const auto set = overrides.find(mainEvent.file->ics.slice(mainEvent.event->uid));
    if (set == overrides.end()) {
        return;
    }
    set->second.mainEvent = mainEvent;
    if (!set->second.future.empty()) {
        constexpr std::int32_t days = longestShift / secondsPerDay;
        constexpr auto farthest = std::numeric_limits<std::int32_t>::max();
        entry.firstDay = std::max(entry.firstDay, days - farthest) - days;
        entry.lastDay = std::min(entry.lastDay, farthest - days) + days;
    }
}

} // namespace

EventSet collectEvents(const std::vector<std::shared_ptr<LoadedFile>>& files) {
    std::size_t count = 0;
    for (const auto& file : files) {
        count += file->ics.events.size();
    }
    EventSet result;
    const std::vector<std::uint32_t> hashes = uidHashes(files, count);
    const std::vector<bool> isSuperseded = findSuperseded(files, hashes);
    HashFilter overridden(count);
    forEachEvent(files, [&](std::uint32_t number, const EventReference& one, const EventEntry&) {
        if (one.event->recurrenceId) {
            overridden.insert(hashes[number]);
            result.overrides[one.file->ics.slice(one.event->uid)].all.push_back(one);
        }
    });
    for (auto& [uid, set] : result.overrides) {
        sortOverrides(set);
    }
    result.entries.reserve(count);
    forEachEvent(files,
                 [&](std::uint32_t number, const EventReference& one, const EventEntry& entry) {
                     if (isSuperseded[number]) {
                         return;
                     }
                     result.entries.push_back(entry);
                     if (!one.event->recurrenceId && overridden.mayContain(hashes[number])) {
                         followMainEvent(one, result.overrides, result.entries.back());
                     }
                 });
    return result;
}

} // namespace quorvel::icalendar
