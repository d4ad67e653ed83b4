// The calendars of one source, whatever kind of source it is.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/calendar_folder.h"
#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/loaded_calendar.h"

namespace quorvel::freedesktop::calendars {

// Used in this order: scan(), then reading all of unreadFiles(), then readDatabases(), then
// build(). Belongs to the reader's thread.
class SourceCalendars {
public:
    virtual ~SourceCalendars() = default;

    // Finds out which files there are and their versions, and reads no calendar.
    virtual void scan(const std::function<bool(std::string_view)>& zoneIsKnown) = 0;
    // Adds everything that the calendars depend on, as far as a scan finds it.
    virtual void addTo(SignatureHash& signature) const = 0;
    // The calendar files of the last scan that have to be read, in order.
    virtual std::vector<UnreadFile> unreadFiles() = 0;
    // Reads what has changed and is no calendar file.
    virtual void readDatabases(const ReadContext& context) = 0;
    // Of the calendars that need not be read again.
    virtual std::size_t bytesInMemory() const = 0;
    // Makes the calendars of what was read. A calendar stays the same object while neither its
    // events nor its names change.
    virtual void build() = 0;

    virtual bool isReadable() const = 0; // when it was last scanned
    // A scan shows everything that may change the calendars from now on.
    virtual bool isSettled() const = 0;
    virtual const std::vector<std::shared_ptr<LoadedCalendar>>& calendars() const = 0;
    // Adds the problems of the source and of its calendars, in order.
    virtual void addTo(std::vector<VersionedProblem>& problems) const = 0;
};

} // namespace quorvel::freedesktop::calendars
