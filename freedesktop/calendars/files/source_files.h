// The calendars of one source, from the files in which it has them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/content_hash.h"
#include "base/translatable_text.h"
#include "freedesktop/calendars/files/calendar_file.h"
#include "freedesktop/calendars/files/calendar_folder.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/files/loaded_calendar.h"
#include "freedesktop/calendars/files/source_calendars.h"

namespace quorvel::freedesktop::calendars {

class SourceFiles final : public SourceCalendars {
public:
    explicit SourceFiles(CalendarSource source);

    // A text in memory is parsed by the first scan.
    void scan(const std::function<bool(std::string_view)>& zoneIsKnown) override;
    void addTo(SignatureHash& signature) const override;
    std::vector<UnreadFile> unreadFiles() override;
    void readDatabases(const ReadContext&) override {}
    std::size_t bytesInMemory() const override;
    void build() override;

    bool isReadable() const override { return m_isReadable; }
    bool isSettled() const override;
    const std::vector<std::shared_ptr<LoadedCalendar>>& calendars() const override {
        return m_calendars;
    }
    void addTo(std::vector<VersionedProblem>& problems) const override;

private:
    std::vector<const CalendarFile*> parsedFiles() const;
    void scanPath();
    void scanFolderAtPath();
    void scanFileAtPath();
    void removeFiles();
    void addCopyTo(SignatureHash& signature) const;
    const std::string& label() const;
    void buildFolder(const CalendarFolder& folder, bool isRoot);
    void addCalendar(const CalendarNames& names, const std::string& store,
                     std::vector<std::shared_ptr<icalendar::LoadedFile>> files);
    void addCalendarOfFile(const std::shared_ptr<icalendar::LoadedFile>& file,
                           std::string_view name, std::string_view filePath);
    void addCopiedCalendar(const std::shared_ptr<icalendar::LoadedFile>& file,
                           const CopiedCalendar& copy);

    CalendarSource m_source;
    std::string m_realPath; // with all links resolved; of a text "text:" and its name
    bool m_isReadable = false;
    TranslatableText m_problem;               // of the source as a whole; empty: none
    std::unique_ptr<CalendarFile> m_file;     // null unless the source is a file or a text
    std::unique_ptr<CalendarFolder> m_folder; // null unless the source is a folder
    std::vector<std::shared_ptr<LoadedCalendar>> m_calendars;
    // By identifier, while build() runs.
    std::unordered_map<std::string, std::shared_ptr<LoadedCalendar>> m_previousCalendars;
    std::vector<std::shared_ptr<LoadedCalendar>> m_newCalendars; // likewise: those that are none
};

} // namespace quorvel::freedesktop::calendars
