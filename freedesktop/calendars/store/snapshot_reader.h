// From sources to snapshots: which calendars there are now, and their parsed files.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/files/source_calendars.h"
#include "freedesktop/calendars/store/deferred_index.h"
#include "freedesktop/calendars/store/store_snapshot.h"

namespace quorvel::freedesktop::calendars {

// The parsed calendars of a snapshot. They belong to the reader's thread.
struct LoadedCalendars {
    std::vector<std::shared_ptr<LoadedCalendar>> calendars;
    bool isSettled = false; // every later change of them will show in the signature of a scan
};

// Belongs to the reader's thread.
class SnapshotReader {
public:
    // Both outlive it. Reading ends early once `isCancelled` is true.
    SnapshotReader(DeferredIndex& index, const std::atomic<bool>& isCancelled);

    void setSources(std::vector<CalendarSource> sources);
    void setFileClock(std::function<std::int64_t()> clock); // nanoseconds since 1970

    // The calendars as they are on disk now; the same object while nothing changes. Files are read
    // only where the index does not have the snapshot.
    std::shared_ptr<const StoreSnapshot> refresh();
    // The calendars of a snapshot that refresh() has returned. Where the index had that snapshot
    // the files are read now.
    std::shared_ptr<const LoadedCalendars> calendarsOf(const std::shared_ptr<const StoreSnapshot>&);
    bool hasLoaded(const std::shared_ptr<const StoreSnapshot>& snapshot) const;
    // Frees the calendars of snapshots that nobody uses any more.
    void freeUnused();
    // A search of the snapshot may be stored in the index.
    bool isSettled(const std::shared_ptr<const StoreSnapshot>& snapshot) const;

private:
    Signature scan();
    std::shared_ptr<const StoreSnapshot> storedSnapshot(const Signature& signature);
    void readFiles();
    std::size_t bytesInMemory() const;
    std::pair<StoreSnapshot, std::shared_ptr<const LoadedCalendars>> build(const Signature&);
    std::shared_ptr<const StoreSnapshot> readSnapshot(const Signature& signature);
    std::uint64_t contentNumber(const StoreSnapshot& snapshot, const LoadedCalendars& loaded);

    DeferredIndex& m_index;
    ReadContext m_context;
    // All that were ever set, so that going back to a source reads no unchanged file again.
    std::map<CalendarSource, std::unique_ptr<SourceCalendars>> m_knownSources;
    std::vector<SourceCalendars*> m_sources;       // the current ones, in order
    std::shared_ptr<const StoreSnapshot> m_latest; // null before the first refresh
    std::uint64_t m_contents = 0;                  // how many different ones there were
    // By snapshot, without extending its life.
    std::map<std::weak_ptr<const StoreSnapshot>, std::shared_ptr<const LoadedCalendars>,
             std::owner_less<>>
        m_loaded;
};

} // namespace quorvel::freedesktop::calendars
