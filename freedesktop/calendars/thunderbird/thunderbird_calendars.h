// The source `thunderbird:`: the calendars that Thunderbird stores on this machine.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "freedesktop/calendars/files/source_calendars.h"
#include "freedesktop/calendars/thunderbird/profile_calendars.h"
#include "freedesktop/calendars/thunderbird/profiles.h"

namespace quorvel::freedesktop::thunderbird {

// Nothing in a profile is ever written or locked: its databases are read from copies. Of two
// profiles with the same calendar the more recently used one has it.
class ThunderbirdCalendars final : public calendars::SourceCalendars {
public:
    explicit ThunderbirdCalendars(CalendarSource source); // isThunderbird()

    void scan(const std::function<bool(std::string_view)>& zoneIsKnown) override;
    void addTo(SignatureHash& signature) const override;
    std::vector<calendars::UnreadFile> unreadFiles() override { return {}; }
    void readDatabases(const calendars::ReadContext& context) override;
    std::size_t bytesInMemory() const override;
    void build() override;

    bool isReadable() const override;
    bool isSettled() const override;
    const std::vector<std::shared_ptr<calendars::LoadedCalendar>>& calendars() const override {
        return m_calendars;
    }
    void addTo(std::vector<calendars::VersionedProblem>& problems) const override;

private:
    CalendarSource m_source;
    TranslatableText m_problem; // of the source as a whole; empty: none
    std::vector<std::unique_ptr<ProfileCalendars>> m_profiles;
    std::vector<std::shared_ptr<calendars::LoadedCalendar>> m_calendars;
};

} // namespace quorvel::freedesktop::thunderbird
