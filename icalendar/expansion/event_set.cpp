// Nearly all events have a UID of their own, so that versions are sought among the few others only.
#include "icalendar/expansion/event_set.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <tuple>
#include <utility>

#include "icalendar/expansion/bounds.h"

namespace quorvel::icalendar {

namespace {

std::int64_t overriddenLocalTime(const EventReference& reference) {
    return reference.event->recurrenceId->localTime;
}

using Files = std::vector<std::shared_ptr<LoadedFile>>;

// What decides about the events, by their numbers among those of all files, in the files' order:
// the events themselves are too large to be gone through more than once.
struct EventList {
    std::vector<EventEntry> entries;
    std::vector<std::uint32_t> uidHashes;
    std::vector<bool> areOverrides;
};

EventList listEvents(const Files& files) {
    std::size_t count = 0;
    for (const auto& file : files) {
        count += file->ics.events.size();
    }
    EventList list;
    list.entries.reserve(count);
    list.uidHashes.reserve(count);
    list.areOverrides.reserve(count);
    for (std::uint32_t fileNumber = 0; fileNumber < files.size(); ++fileNumber) {
        const IcsFile& file = files[fileNumber]->ics;
        for (std::uint32_t number = 0; number < file.events.size(); ++number) {
            const IcsEvent& event = file.events[number];
            const std::size_t hash = std::hash<std::string_view>()(file.slice(event.uid));
            list.entries.push_back({event.firstDay, event.lastDay, fileNumber, number});
            list.uidHashes.push_back(static_cast<std::uint32_t>(hash));
            list.areOverrides.push_back(event.recurrenceId.has_value());
        }
    }
    return list;
}

EventReference referenceTo(const Files& files, const EventEntry& entry) {
    LoadedFile& file = *files[entry.file];
    return {&file, &file.ics.events[entry.event]};
}

std::string_view uidOf(const EventReference& reference) {
    return reference.file->ics.slice(reference.event->uid);
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
std::vector<bool> findContested(const EventList& list) {
    const std::size_t count = list.entries.size();
    HashFilter once(count);
    HashFilter again(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!list.areOverrides[i]) {
            (once.mayContain(list.uidHashes[i]) ? again : once).insert(list.uidHashes[i]);
        }
    }
    std::vector<bool> isContested(count);
    for (std::size_t i = 0; i < count; ++i) {
        isContested[i] = !list.areOverrides[i] && again.mayContain(list.uidHashes[i]);
    }
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
std::vector<bool> findSuperseded(const Files& files, const EventList& list) {
    const std::vector<bool> isContested = findContested(list);
    std::vector<Version> versions;
    versions.reserve(
        static_cast<std::size_t>(std::count(isContested.begin(), isContested.end(), true)));
    for (std::uint32_t i = 0; i < list.entries.size(); ++i) {
        if (isContested[i]) {
            const EventReference one = referenceTo(files, list.entries[i]);
            versions.push_back({uidOf(one), one.event, i});
        }
    }
    std::sort(versions.begin(), versions.end());
    std::vector<bool> isSuperseded(list.entries.size());
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

EventSet collectEvents(const Files& files) {
    EventList list = listEvents(files);
    const std::vector<bool> isSuperseded = findSuperseded(files, list);
    const std::size_t count = list.entries.size();
    EventSet result;
    HashFilter overridden(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (list.areOverrides[i]) {
            overridden.insert(list.uidHashes[i]);
            const EventReference one = referenceTo(files, list.entries[i]);
            result.overrides[uidOf(one)].all.push_back(one);
        }
    }
    for (auto& [uid, set] : result.overrides) {
        sortOverrides(set);
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (isSuperseded[i]) {
            continue;
        }
        EventEntry& entry = list.entries[kept++] = list.entries[i];
        if (!list.areOverrides[i] && overridden.mayContain(list.uidHashes[i])) {
            followMainEvent(referenceTo(files, entry), result.overrides, entry);
        }
    }
    list.entries.resize(kept);
    result.entries = std::move(list.entries);
    return result;
}

} // namespace quorvel::icalendar
