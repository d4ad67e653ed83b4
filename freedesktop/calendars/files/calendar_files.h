// The files of one source: found, and put together to calendars once they are read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/calendar_file.h"
#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/files/loaded_calendar.h"

namespace quorvel::freedesktop::calendars {

// A file that is to be read, or to be read again.
struct UnreadFile {
    CalendarFile* file = nullptr;
    FileKind kind = FileKind::calendar;
    std::string path;
    std::string place; // the path with all links followed
};

class CalendarFiles {
public:
    explicit CalendarFiles(CalendarSource source);
    ~CalendarFiles();
    CalendarFiles(const CalendarFiles&) = delete;
    CalendarFiles& operator=(const CalendarFiles&) = delete;

    // Looks at the disk, and reads nothing. A text in memory is read the first time.
    void look(const std::function<bool(std::string_view)>& zoneIsKnown);
    // All that the calendars depend on, as far as a look shows it.
    void addTo(SignatureHash& signature) const;
    // Of what was seen, in order.
    std::vector<UnreadFile> unreadFiles();
    // Of what was read, those with events, in order.
    std::vector<CalendarFile*> readFiles();
    // Makes the calendars of what was read.
    void build();

    bool isReadable() const { return m_isReadable; } // at the last look
    // Whether what was read can change only so that a look shows it.
    bool isSettled() const;
    const std::vector<std::shared_ptr<LoadedCalendar>>& calendars() const { return m_calendars; }
    // Of what was seen and read, in order.
    void addTo(std::vector<VersionedProblem>& problems) const;

private:
    struct Child;
    struct Folder;
    struct Listing;
    class Lookers;
    struct Walk;

    void lookAtPath();
    void forget(); // there is nothing to be read any longer
    void lookAt(Folder& folder, Walk& walk);
    void lookAtChildren(Folder& folder, std::vector<Child> children, Walk& walk);
    void buildFolder(const Folder& folder, bool isRoot);
    void addCalendar(const CalendarNames& names,
                     std::vector<std::shared_ptr<icalendar::LoadedFile>> files);
    void addCalendarOfFile(const std::shared_ptr<icalendar::LoadedFile>& file,
                           std::string_view name, std::string_view place);

    CalendarSource m_source;
    std::string m_place; // with all links followed
    bool m_isReadable = false;
    std::string m_problem; // of the source itself
    std::unique_ptr<CalendarFile> m_file;
    std::unique_ptr<Folder> m_folder;
    std::vector<std::shared_ptr<LoadedCalendar>> m_calendars;
    // By identifier, while they are built anew.
    std::unordered_map<std::string, std::shared_ptr<LoadedCalendar>> m_oldCalendars;
};

} // namespace quorvel::freedesktop::calendars
