#include "freedesktop/calendars/store/calendar_reader.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <future>
#include <mutex>
#include <set>
#include <unordered_set>

#include "freedesktop/calendars/index/stored_file.h"
#include "freedesktop/calendars/store/event_order.h"
#include "freedesktop/calendars/store/stored_results.h"
#include "icalendar/model/ics_file_reader.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t mostBytesInMemory = std::size_t{262} << 20U;
constexpr std::size_t mostBytesKept = std::size_t{32} << 20U; // of a file: to write it takes room
constexpr std::size_t mostProblemsOfAFile = 50;               // while it is expanded
constexpr std::size_t mostProblems = 10000;

std::string identifierOf(const platform::EKCalendar& calendar,
                         const icalendar::Occurrence& occurrence) {
    const icalendar::IcsFile& file = occurrence.file->ics;
    std::string identifier = calendar.calendarIdentifier;
    identifier += ':';
    identifier += icalendar::validUtf8(file.slice(occurrence.event->uid));
    if (occurrence.recurrence) {
        const auto since = static_cast<std::int64_t>(platform::referenceDateSince1970);
        identifier += ":RID=" + std::to_string(*occurrence.recurrence - since);
    }
    return identifier;
}

std::optional<std::string> textOf(const icalendar::IcsFile& file,
                                  const icalendar::SmallOptional<icalendar::Slice>& slice) {
    return slice ? std::optional(icalendar::readText(file.slice(*slice))) : std::nullopt;
}

std::shared_ptr<const platform::EKEvent>
makeEvent(const std::shared_ptr<const platform::EKCalendar>& calendar,
          const icalendar::Occurrence& occurrence) {
    const icalendar::IcsFile& file = occurrence.file->ics;
    auto event = std::make_shared<platform::EKEvent>();
    event->title = textOf(file, occurrence.event->title);
    event->location = textOf(file, occurrence.event->location);
    event->startDate =
        platform::dateWithTimeIntervalSince1970(static_cast<double>(occurrence.start));
    event->endDate = platform::dateWithTimeIntervalSince1970(static_cast<double>(occurrence.end));
    event->isAllDay = occurrence.isAllDay;
    event->calendar = calendar;
    event->persistentEvent.eventIdentifier = identifierOf(*calendar, occurrence);
    return event;
}

Signature keyOfFile(std::string_view place) {
    SignatureHash key;
    key.add(place);
    return key.value();
}

Signature keyOfSearch(const SearchRequest& request, const icalendar::Window& window) {
    SignatureHash key;
    key.add(request.snapshot->signature);
    key.add(std::string_view(request.userZone->zone().identifier()));
    key.add(std::llround(window.from));
    key.add(std::llround(window.to));
    for (const auto& calendar : request.calendars) {
        key.add(std::string_view(calendar->calendarIdentifier));
    }
    return key.value();
}

// What is found amiss while a search is expanded, each thing once.
class SearchProblems {
public:
    void add(const icalendar::LoadedFile& file, std::size_t line, std::string what) {
        auto& ofFile = m_seen[&file];
        if (ofFile.size() < mostProblemsOfAFile && m_problems.size() < mostProblems &&
            ofFile.emplace(line, what).second) {
            m_problems.push_back({{file.path, line, std::move(what)}, file.version});
        }
    }
    std::vector<VersionedProblem> take() { return std::move(m_problems); }

private:
    std::map<const icalendar::LoadedFile*, std::set<std::pair<std::size_t, std::string>>> m_seen;
    std::vector<VersionedProblem> m_problems;
};

void boundProblems(std::vector<VersionedProblem>& problems) {
    if (problems.size() > mostProblems) {
        const std::size_t more = problems.size() - mostProblems;
        problems.resize(mostProblems);
        problems.push_back({{"the calendars", 0, "and " + std::to_string(more) + " more"}, 0});
    }
}

// What they can take in memory: hardly an event comes to more than five times its length.
std::size_t mostBytesOf(const std::vector<UnreadFile>& files) {
    std::size_t bytes = 0;
    for (const UnreadFile& one : files) {
        bytes += 5 * static_cast<std::size_t>(std::max<std::int64_t>(one.file->seen.size, 0));
    }
    return bytes;
}

// Worth a second thread: reading and cutting takes longer than starting one.
bool isMuch(const std::vector<UnreadFile>& files) {
    constexpr std::int64_t much = 400'000; // bytes
    constexpr std::int64_t costOfOpening = 2'000;
    std::int64_t bytes = 0;
    for (const UnreadFile& one : files) {
        bytes += std::max<std::int64_t>(one.file->seen.size, 0) + costOfOpening;
    }
    return bytes > much && files.size() > 1;
}

} // namespace

CalendarReader::CalendarReader()
    : m_context{isExactTimeZoneName, fileClock, &m_isCancelled} {}

CalendarReader::~CalendarReader() {
    m_expanded.clear();
    m_latest = nullptr;
    m_known.clear();
    keep();
}

void CalendarReader::setSources(std::vector<CalendarSource> sources) {
    m_current.clear();
    m_isAllOnDisk = true;
    for (CalendarSource& source : sources) {
        m_isAllOnDisk = m_isAllOnDisk && !source.text;
        auto key = std::pair(source.name, source.text);
        auto& known = m_known[std::move(key)];
        if (!known) {
            known = std::make_unique<CalendarFiles>(std::move(source));
        }
        m_current.push_back(known.get());
    }
    m_latest = nullptr;
}

void CalendarReader::setIndex(std::unique_ptr<CalendarIndex> index) {
    m_index = std::move(index);
}

void CalendarReader::setFileClock(std::function<std::int64_t()> clock) {
    m_context.fileClock = std::move(clock);
}

// ---- snapshots

Signature CalendarReader::look() {
    SignatureHash signature;
    for (CalendarFiles* const files : m_current) {
        files->look(m_context.zoneIsKnown);
        files->addTo(signature);
    }
    return signature.value();
}

std::shared_ptr<StoreSnapshot> CalendarReader::refresh() {
    const Signature seen = look();
    if (m_latest && m_latest->isSettled && m_latest->signature == seen) {
        return m_latest;
    }
    auto snapshot = keptSnapshot(seen);
    if (!snapshot) {
        snapshot = read(seen);
        if (snapshot->isSettled && m_index && m_isAllOnDisk) {
            m_toBeKept.push_back(
                {IndexKind::snapshot, seen, [snapshot] { return bytesOfSnapshot(*snapshot); }});
        }
    }
    m_latest = std::move(snapshot);
    return m_latest;
}

std::shared_ptr<StoreSnapshot> CalendarReader::keptSnapshot(const Signature& seen) {
    if (!m_index || !m_isAllOnDisk) {
        return nullptr;
    }
    const auto bytes = CalendarIndex::Reading(*m_index).find(IndexKind::snapshot, seen);
    auto snapshot = bytes ? snapshotFromBytes(*bytes) : std::nullopt;
    if (!snapshot) {
        return nullptr;
    }
    snapshot->signature = seen;
    snapshot->isSettled = true;
    return std::make_shared<StoreSnapshot>(*std::move(snapshot));
}

std::shared_ptr<StoreSnapshot> CalendarReader::read(const Signature& seen) {
    readFiles();
    auto snapshot = std::make_shared<StoreSnapshot>();
    auto loaded = std::make_shared<LoadedCalendars>();
    snapshot->signature = seen;
    snapshot->isSettled = true;
    std::unordered_set<std::string_view> shown;
    for (CalendarFiles* const files : m_current) {
        files->build();
        files->addTo(snapshot->problems);
        snapshot->isSettled = snapshot->isSettled && files->isSettled();
        snapshot->isAnyReadable = snapshot->isAnyReadable || files->isReadable();
        for (const auto& calendar : files->calendars()) {
            if (shown.insert(calendar->calendar->calendarIdentifier).second) {
                loaded->push_back(calendar);
                snapshot->calendars.push_back(calendar->calendar);
                snapshot->isAnyCalendar = snapshot->isAnyCalendar || calendar->couldBeRead();
            }
        }
    }
    boundProblems(snapshot->problems);
    if (m_latest && m_latest->loaded && *m_latest->loaded == *loaded &&
        m_latest->problems == snapshot->problems &&
        m_latest->isAnyReadable == snapshot->isAnyReadable) {
        m_latest->signature = seen; // nothing but times of files
        m_latest->isSettled = snapshot->isSettled;
        return m_latest;
    }
    snapshot->loaded = std::move(loaded);
    return snapshot;
}

// ---- files

void CalendarReader::readFiles() {
    std::vector<UnreadFile> unread;
    for (CalendarFiles* const files : m_current) {
        for (UnreadFile& one : files->unreadFiles()) {
            unread.push_back(std::move(one));
        }
    }
    if (mostBytesOf(unread) + bytesInMemory() > mostBytesInMemory) {
        readWithinRoom(unread);
    } else {
        readAll(unread);
    }
}

void CalendarReader::readAll(const std::vector<UnreadFile>& unread) {
    std::vector<std::optional<std::string>> kept(unread.size());
    if (m_index && m_isAllOnDisk) {
        CalendarIndex::Reading reading(*m_index);
        std::transform(unread.begin(), unread.end(), kept.begin(),
                       [&](const UnreadFile& one) { return keptBytes(one, reading); });
    }
    std::vector<UnreadFile> fromDisk;
    std::mutex mutex;
    std::atomic<std::size_t> next = 0;
    const auto readMany = [&] {
        for (std::size_t i = next++; i < unread.size() && !m_isCancelled; i = next++) {
            const auto bytes = std::exchange(kept[i], std::nullopt);
            if (!bytes || !takeKept(unread[i], *bytes, mostBytesInMemory)) {
                readCalendarFile(*unread[i].file, unread[i].path, unread[i].kind, m_context);
                const std::lock_guard lock(mutex);
                fromDisk.push_back(unread[i]);
            }
        }
    };
    std::future<void> other;
    if (isMuch(unread)) {
        // Deferred where the system has no thread to give: one reads them all then.
        other = std::async(std::launch::async | std::launch::deferred, readMany);
    }
    readMany();
    if (other.valid()) {
        other.get();
    }
    for (const UnreadFile& one : fromDisk) {
        keepFile(one);
    }
}

// One after the other, as long as there is room for them.
void CalendarReader::readWithinRoom(const std::vector<UnreadFile>& unread) {
    std::optional<CalendarIndex::Reading> reading;
    if (m_index && m_isAllOnDisk) {
        reading.emplace(*m_index);
    }
    std::size_t bytes = bytesInMemory();
    ReadContext context = m_context;
    for (const UnreadFile& one : unread) {
        if (m_isCancelled) {
            return;
        }
        context.mostBytes = std::min(icalendar::IcsFileReader::mostBytesOfAFile,
                                     mostBytesInMemory - std::min(bytes, mostBytesInMemory));
        const auto kept = reading ? keptBytes(one, *reading) : std::nullopt;
        if (!kept || !takeKept(one, *kept, context.mostBytes)) {
            readCalendarFile(*one.file, one.path, one.kind, context);
            keepFile(one);
        }
        bytes += one.file->loaded ? one.file->loaded->ics.sizeInMemory() : 0;
    }
}

// What the index has of the file, as it is or as it was. One that was read before by this process
// has changed since.
std::optional<std::string> CalendarReader::keptBytes(const UnreadFile& one,
                                                     CalendarIndex::Reading& reading) {
    if (one.kind != FileKind::calendar || one.file->wasRead || one.file->seenError != 0) {
        return std::nullopt;
    }
    return reading.find(IndexKind::file, keyOfFile(one.place));
}

// From any thread. False where the file is another by now.
bool CalendarReader::takeKept(const UnreadFile& one, std::string_view bytes,
                              std::size_t mostBytes) {
    CalendarFile& file = *one.file;
    auto ics = fileFromBytes(bytes, file.seen);
    if (!ics) {
        return false;
    }
    if (ics->sizeInMemory() > mostBytes) {
        file.leaveOut();
        return true;
    }
    file.setLoaded(one.path, file.seen, *std::move(ics));
    file.isSettled = true;
    return true;
}

void CalendarReader::keepFile(const UnreadFile& one) {
    if (m_index && m_isAllOnDisk && one.file->isSettled && one.file->loaded &&
        one.file->loaded->ics.sizeInMemory() <= mostBytesKept) {
        m_toBeKept.push_back({IndexKind::file, keyOfFile(one.place),
                              [version = one.file->version, loaded = one.file->loaded] {
                                  return bytesOfFile(version, loaded->ics);
                              }});
    }
}

// Of files that are not to be read again.
std::size_t CalendarReader::bytesInMemory() {
    std::size_t bytes = 0;
    for (CalendarFiles* const files : m_current) {
        for (const CalendarFile* const file : files->readFiles()) {
            bytes += file->isCurrent() ? file->loaded->ics.sizeInMemory() : 0;
        }
    }
    return bytes;
}

const LoadedCalendars& CalendarReader::loaded(StoreSnapshot& snapshot) {
    if (!snapshot.loaded) {
        const auto current = read(snapshot.signature);
        snapshot.loaded = current->loaded;
        // What was changed since the look shows the next time.
        snapshot.isSettled = snapshot.isSettled && current->isSettled;
    }
    return *snapshot.loaded;
}

// ---- searches

std::shared_ptr<const SearchResult> CalendarReader::search(const SearchRequest& request) {
    const bool mayBeKept = m_index && m_isAllOnDisk;
    if (mayBeKept && request.snapshot->isSettled) {
        if (auto kept = keptSearch(request)) {
            return std::make_shared<const SearchResult>(*std::move(kept));
        }
    }
    auto result = std::make_shared<const SearchResult>(expand(request));
    if (mayBeKept && request.snapshot->isSettled) {
        const icalendar::Window& window = result->isNarrow ? request.narrow : request.window;
        m_toBeKept.push_back({IndexKind::search, keyOfSearch(request, window),
                              [result, calendars = request.calendars] {
                                  return bytesOfSearch(*result, calendars);
                              }});
    }
    return result;
}

std::optional<SearchResult> CalendarReader::keptSearch(const SearchRequest& request) {
    CalendarIndex::Reading reading(*m_index);
    for (const icalendar::Window* const window : {&request.window, &request.narrow}) {
        const auto bytes = reading.find(IndexKind::search, keyOfSearch(request, *window));
        auto result = bytes ? searchFromBytes(*bytes, request.calendars) : std::nullopt;
        if (result) {
            result->isNarrow = window == &request.narrow;
            return result;
        }
    }
    return std::nullopt;
}

SearchResult CalendarReader::expand(const SearchRequest& request) {
    SearchResult result;
    if (!expandWithin(request.window, request)) {
        result.isNarrow = true;
        expandWithin(request.narrow, request);
    }
    for (const ExpandedCalendar& one : m_expanded) {
        result.events.insert(result.events.end(), one.events.begin(), one.events.end());
        result.problems.insert(result.problems.end(), one.problems.begin(), one.problems.end());
    }
    std::sort(result.events.begin(), result.events.end(), comesBefore);
    boundProblems(result.problems);
    return result;
}

// A calendar that is what it was comes to what it came to, unless all of them cost too much. False
// where not everything was found.
bool CalendarReader::expandWithin(const icalendar::Window& window, const SearchRequest& request) {
    const bool isLikeBefore = m_expandedZone == request.userZone && m_expandedWindow == window;
    auto before = std::exchange(m_expanded, {});
    m_expandedZone = request.userZone;
    m_expandedWindow = window;
    if (!isLikeBefore) {
        before.clear();
    }
    if (!expandAll(request, std::move(before))) {
        m_expanded.clear();
        expandAll(request, {});
    }
    return std::none_of(m_expanded.begin(), m_expanded.end(),
                        [](const ExpandedCalendar& one) { return one.cost.isCut; });
}

// False where they cost too much for what was known to be used.
bool CalendarReader::expandAll(const SearchRequest& request, std::vector<ExpandedCalendar> before) {
    const LoadedCalendars& all = loaded(*request.snapshot);
    icalendar::SearchCost cost;
    bool isKnownUsed = false;
    bool isAllowed = true;
    for (const auto& name : request.calendars) {
        const auto calendar = std::find_if(all.begin(), all.end(), [&](const auto& one) {
            return one->calendar->calendarIdentifier == name->calendarIdentifier;
        });
        if (calendar == all.end()) {
            continue;
        }
        const auto known = std::find_if(before.begin(), before.end(), [&](const auto& one) {
            return one.calendar == *calendar && one.name == name;
        });
        if (known != before.end()) {
            isKnownUsed = true;
            isAllowed = isAllowed && cost.allows(known->cost);
            cost.calendar = known->cost;
            m_expanded.push_back(std::move(*known));
            before.erase(known);
        } else {
            m_expanded.push_back(expandOne(request, *calendar, name, cost));
        }
        cost.endCalendar();
    }
    return !isKnownUsed || (isAllowed && !cost.hasSpentSteps());
}

ExpandedCalendar CalendarReader::expandOne(const SearchRequest& request,
                                           const std::shared_ptr<LoadedCalendar>& calendar,
                                           const std::shared_ptr<const platform::EKCalendar>& name,
                                           icalendar::SearchCost& cost) {
    SearchProblems problems;
    const icalendar::ReportExpansion report = [&problems](icalendar::LoadedFile& file,
                                                          std::size_t line, std::string what) {
        problems.add(file, line, std::move(what));
    };
    icalendar::Expander expander(m_expandedWindow, *request.userZone, m_zones, report, cost);
    std::vector<icalendar::Occurrence> occurrences;
    for (const auto& entry : calendar->entries) {
        if (cost.calendar.found == cost.mostFound() && cost.calendar.isCut) {
            break;
        }
        if (expander.mayMeetWindow(entry.firstDay, entry.lastDay)) {
            icalendar::LoadedFile& file = *calendar->files[entry.file];
            expander.expand({&file, &file.ics.events[entry.event]}, calendar->overrides,
                            occurrences);
        }
    }
    ExpandedCalendar result{calendar, name, {}, problems.take(), cost.calendar};
    result.events.reserve(occurrences.size());
    for (const icalendar::Occurrence& occurrence : occurrences) {
        result.events.push_back(makeEvent(name, occurrence));
    }
    return result;
}

void CalendarReader::keep() {
    if (m_index && !m_toBeKept.empty()) {
        m_index->keep(std::exchange(m_toBeKept, {}));
    }
    m_toBeKept.clear();
}

void CalendarReader::load() {
    if (m_latest) {
        loaded(*m_latest);
    }
}

} // namespace quorvel::freedesktop::calendars
