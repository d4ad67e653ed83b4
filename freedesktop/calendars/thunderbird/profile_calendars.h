// The calendars of one profile of Thunderbird.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/files/loaded_calendar.h"
#include "freedesktop/calendars/thunderbird/calendar_registry.h"
#include "freedesktop/calendars/thunderbird/profile_database.h"
#include "freedesktop/io/file_version.h"

namespace quorvel::freedesktop::thunderbird {

// Used as SourceCalendars is. Belongs to the reader's thread.
class ProfileCalendars {
public:
    explicit ProfileCalendars(std::string folder);

    // Reads the preferences where they have changed.
    void scan();
    void addTo(SignatureHash& signature) const;
    void readDatabases(const calendars::ReadContext& context);
    std::size_t bytesInMemory() const;
    void build();

    const std::string& folder() const { return m_folder; }
    bool isReadable() const { return m_problem.empty(); } // the preferences
    bool isSettled() const;
    const std::vector<std::shared_ptr<calendars::LoadedCalendar>>& calendars() const {
        return m_calendars;
    }
    void addTo(std::vector<calendars::VersionedProblem>& problems) const;

private:
    void readPreferences();
    std::vector<WantedCalendar> wantedOf(bool isLocal) const;
    std::shared_ptr<icalendar::LoadedFile> eventsOf(const RegisteredCalendar& registered) const;
    std::shared_ptr<calendars::LoadedCalendar>
    calendarOf(const RegisteredCalendar& registered,
               const std::shared_ptr<icalendar::LoadedFile>& events);

    std::string m_folder;
    FileVersion m_preferences; // the version that the registry was read from
    bool m_arePreferencesSettled = false;
    std::string m_problem; // with the preferences; empty: none
    std::vector<RegisteredCalendar> m_registry;
    ProfileDatabase m_local;
    ProfileDatabase m_cache;
    std::vector<std::shared_ptr<calendars::LoadedCalendar>> m_calendars;
};

} // namespace quorvel::freedesktop::thunderbird
