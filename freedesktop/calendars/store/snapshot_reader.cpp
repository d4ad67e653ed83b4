#include "freedesktop/calendars/store/snapshot_reader.h"

#include <string_view>
#include <unordered_set>

#include "freedesktop/calendars/files/source_files.h"
#include "freedesktop/calendars/store/file_loader.h"
#include "freedesktop/calendars/store/reported_problems.h"
#include "freedesktop/calendars/store/stored_results.h"
#include "freedesktop/calendars/thunderbird/thunderbird_calendars.h"

namespace quorvel::freedesktop::calendars {
namespace {

std::unique_ptr<SourceCalendars> calendarsOfSource(CalendarSource source) {
    if (thunderbird::isThunderbird(source)) {
        return std::make_unique<thunderbird::ThunderbirdCalendars>(std::move(source));
    }
    return std::make_unique<SourceFiles>(std::move(source));
}

} // namespace

SnapshotReader::SnapshotReader(DeferredIndex& index, const std::atomic<bool>& isCancelled)
    : m_index(index)
    , m_context{isExactTimeZoneName, fileClock, &isCancelled} {}

void SnapshotReader::setSources(std::vector<CalendarSource> sources) {
    m_sources.clear();
    bool areAllOnDisk = true;
    for (CalendarSource& source : sources) {
        areAllOnDisk = areAllOnDisk && !source.text;
        auto& known = m_knownSources[source];
        if (!known) {
            known = calendarsOfSource(std::move(source));
        }
        m_sources.push_back(known.get());
    }
    m_index.setEnabled(areAllOnDisk);
    m_latest = nullptr;
}

void SnapshotReader::setFileClock(std::function<std::int64_t()> clock) {
    m_context.fileClock = std::move(clock);
}

std::shared_ptr<const StoreSnapshot> SnapshotReader::refresh() {
    const Signature signature = scan();
    if (m_latest && isSettled(m_latest) && m_latest->signature == signature) {
        return m_latest;
    }
    auto snapshot = storedSnapshot(signature);
    if (!snapshot) {
        snapshot = readSnapshot(signature);
        if (snapshot->isSettled) {
            m_index.storeLater({IndexKind::snapshot, signature,
                                [snapshot] { return bytesOfSnapshot(*snapshot); }});
        }
    }
    m_latest = std::move(snapshot);
    freeUnused();
    return m_latest;
}

void SnapshotReader::freeUnused() {
    std::erase_if(m_loaded, [](const auto& entry) { return entry.first.expired(); });
}

Signature SnapshotReader::scan() {
    SignatureHash signature;
    for (SourceCalendars* const source : m_sources) {
        source->scan(m_context.zoneIsKnown);
        source->addTo(signature);
    }
    return signature.value();
}

std::shared_ptr<const StoreSnapshot> SnapshotReader::storedSnapshot(const Signature& signature) {
    const auto bytes = m_index.find(IndexKind::snapshot, signature);
    auto snapshot = bytes ? snapshotFromBytes(*bytes) : std::nullopt;
    if (!snapshot) {
        return nullptr;
    }
    snapshot->contentNumber = ++m_contents;
    snapshot->signature = signature;
    snapshot->isSettled = true;
    return std::make_shared<const StoreSnapshot>(*std::move(snapshot));
}

std::shared_ptr<const StoreSnapshot> SnapshotReader::readSnapshot(const Signature& signature) {
    readFiles();
    auto [built, loaded] = build(signature);
    built.contentNumber = contentNumber(built, *loaded);
    auto snapshot = std::make_shared<const StoreSnapshot>(std::move(built));
    m_loaded[snapshot] = std::move(loaded);
    return snapshot;
}

// That of the latest snapshot where nothing but the times of files has changed since.
std::uint64_t SnapshotReader::contentNumber(const StoreSnapshot& snapshot,
                                            const LoadedCalendars& loaded) {
    const auto latest = m_latest ? m_loaded.find(m_latest) : m_loaded.end();
    const bool isUnchanged = latest != m_loaded.end() &&
                             latest->second->calendars == loaded.calendars &&
                             m_latest->problems == snapshot.problems &&
                             m_latest->isAnyReadable == snapshot.isAnyReadable;
    return isUnchanged ? m_latest->contentNumber : ++m_contents;
}

void SnapshotReader::readFiles() {
    std::vector<UnreadFile> unread;
    for (SourceCalendars* const source : m_sources) {
        for (UnreadFile& file : source->unreadFiles()) {
            unread.push_back(std::move(file));
        }
    }
    FileLoader(m_context, m_index).load(unread, bytesInMemory());
    for (SourceCalendars* const source : m_sources) {
        source->readDatabases(m_context);
    }
}

std::size_t SnapshotReader::bytesInMemory() const {
    std::size_t bytes = 0;
    for (const SourceCalendars* const source : m_sources) {
        bytes += source->bytesInMemory();
    }
    return bytes;
}

std::pair<StoreSnapshot, std::shared_ptr<const LoadedCalendars>>
SnapshotReader::build(const Signature& signature) {
    StoreSnapshot snapshot;
    auto loaded = std::make_shared<LoadedCalendars>();
    snapshot.signature = signature;
    snapshot.isSettled = true;
    std::unordered_set<std::string_view> identifiers;
    for (SourceCalendars* const source : m_sources) {
        source->build();
        source->addTo(snapshot.problems);
        snapshot.isSettled = snapshot.isSettled && source->isSettled();
        snapshot.isAnyReadable = snapshot.isAnyReadable || source->isReadable();
        for (const auto& calendar : source->calendars()) {
            if (identifiers.insert(calendar->calendar->calendarIdentifier).second) {
                loaded->calendars.push_back(calendar);
                snapshot.calendars.push_back(calendar->calendar);
                snapshot.stores.push_back(calendar->store);
                if (calendar->isDeselected) {
                    snapshot.deselected.push_back(calendar->calendar->calendarIdentifier);
                }
                snapshot.isAnyCalendar = snapshot.isAnyCalendar || calendar->couldBeRead();
            }
        }
    }
    limitProblems(snapshot.problems);
    loaded->isSettled = snapshot.isSettled;
    return {std::move(snapshot), std::move(loaded)};
}

std::shared_ptr<const LoadedCalendars>
SnapshotReader::calendarsOf(const std::shared_ptr<const StoreSnapshot>& snapshot) {
    auto& loaded = m_loaded[snapshot];
    if (!loaded) {
        readFiles();
        loaded = build(snapshot->signature).second;
    }
    return loaded;
}

bool SnapshotReader::hasLoaded(const std::shared_ptr<const StoreSnapshot>& snapshot) const {
    return m_loaded.count(snapshot) != 0;
}

bool SnapshotReader::isSettled(const std::shared_ptr<const StoreSnapshot>& snapshot) const {
    const auto loaded = m_loaded.find(snapshot);
    return snapshot->isSettled && (loaded == m_loaded.end() || loaded->second->isSettled);
}

} // namespace quorvel::freedesktop::calendars
