// The files of one source: found, read where they are new, and put together to calendars.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "freedesktop/calendar/ical_calendar_stores.h"
#include "freedesktop/calendar/occurrences.h"

namespace quorvel::freedesktop::ics {

struct LoadedCalendar {
    std::shared_ptr<const platform::EKCalendar> calendar;
    std::vector<std::shared_ptr<LoadedFile>> files;
    std::vector<EventEntry> entries;
    Overrides overrides;
};

struct ReadContext {
    std::function<bool(std::string_view)> zoneIsKnown; // from any thread
    CalendarProblemHandler report;
};

class CalendarFiles {
public:
    explicit CalendarFiles(CalendarSource source);
    ~CalendarFiles();
    CalendarFiles(const CalendarFiles&) = delete;
    CalendarFiles& operator=(const CalendarFiles&) = delete;

    // Looks at the disk, and reads what is not what it was.
    void refresh(const ReadContext& context);

    bool isReadable() const { return m_isReadable; } // at the last refresh
    const std::vector<std::shared_ptr<LoadedCalendar>>& calendars() const { return m_calendars; }

private:
    struct File;
    struct Folder;
    struct Walk;
    class FileReader;

    bool refreshText(const ReadContext& context);
    bool refreshPath(const ReadContext& context);
    bool forget(); // there is nothing to be read any longer
    bool refreshFolder(Folder& folder, Walk& walk);
    bool refreshChildren(Folder& folder, std::vector<std::string> names, Walk& walk);
    void build();
    void buildFolder(const Folder& folder, bool isRoot);

    CalendarSource m_source;
    bool m_isReadable = false;
    std::string m_problem; // the last one that was reported of the source itself
    std::unique_ptr<File> m_file;
    std::unique_ptr<Folder> m_folder;
    std::vector<std::shared_ptr<LoadedCalendar>> m_calendars;
};

} // namespace quorvel::freedesktop::ics
