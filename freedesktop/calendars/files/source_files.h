// The calendars of one source, from the files in which it has them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/calendar_file.h"
#include "freedesktop/calendars/files/calendar_folder.h"
#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/files/loaded_calendar.h"

namespace quorvel::freedesktop::calendars {

// Used in this order: scan(), then reading all of unreadFiles(), then build().
class SourceFiles {
public:
    explicit SourceFiles(CalendarSource source);

    // Finds out which files there are and their versions, and reads none. A text in memory is
    // parsed by the first scan.
    void scan(const std::function<bool(std::string_view)>& zoneIsKnown);
    // Adds everything that the calendars depend on, as far as a scan finds it.
    void addTo(SignatureHash& signature) const;
    // Those of the last scan that have to be read, in order.
    std::vector<UnreadFile> unreadFiles();
    // Those that hold a calendar, in order.
    std::vector<const CalendarFile*> parsedFiles() const;
    // Makes the calendars of what was read. A calendar stays the same object while neither its
    // files nor its names change.
    void build();

    bool isReadable() const { return m_isReadable; } // when it was last scanned
    // A scan shows everything that may change the calendars from now on.
    bool isSettled() const;
    const std::vector<std::shared_ptr<LoadedCalendar>>& calendars() const { return m_calendars; }
    // Adds the problems of the source and of its files, in order.
    void addTo(std::vector<VersionedProblem>& problems) const;

private:
    void scanPath();
    void scanFolderAtPath();
    void scanFileAtPath();
    void removeFiles();
    void buildFolder(const CalendarFolder& folder, bool isRoot);
    void addCalendar(const CalendarNames& names, const std::string& store,
                     std::vector<std::shared_ptr<icalendar::LoadedFile>> files);
    void addCalendarOfFile(const std::shared_ptr<icalendar::LoadedFile>& file,
                           std::string_view name, std::string_view filePath);

    CalendarSource m_source;
    std::string m_realPath; // with all links resolved; of a text "text:" and its name
    bool m_isReadable = false;
    std::string m_problem;                    // of the source as a whole; empty: none
    std::unique_ptr<CalendarFile> m_file;     // null unless the source is a file or a text
    std::unique_ptr<CalendarFolder> m_folder; // null unless the source is a folder
    std::vector<std::shared_ptr<LoadedCalendar>> m_calendars;
    // By identifier, while build() runs.
    std::unordered_map<std::string, std::shared_ptr<LoadedCalendar>> m_previousCalendars;
};

} // namespace quorvel::freedesktop::calendars
