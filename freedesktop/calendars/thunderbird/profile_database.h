// One calendar database of a profile: which version of it the last scan found, and what was read.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/calendar_file.h"
#include "freedesktop/calendars/files/calendar_problem.h"
#include "freedesktop/calendars/thunderbird/database_copy.h"
#include "icalendar/expansion/loaded_file.h"

namespace quorvel::freedesktop::thunderbird {

struct WantedCalendar {
    std::string id;          // of its rows
    std::string displayName; // for problems
};

// Belongs to the reader's thread.
class ProfileDatabase {
public:
    explicit ProfileDatabase(std::string path);

    void scan();
    void addTo(SignatureHash& signature) const; // the version that the last scan found
    bool exists() const;
    // Reads these calendars unless they were read of this version. After a failure they stay as
    // they were read before.
    void read(const std::vector<WantedCalendar>& wanted, const calendars::ReadContext& context);

    // Null where it was never read. The same object while its events do not change.
    std::shared_ptr<icalendar::LoadedFile> calendar(const std::string& id) const;
    // A scan shows every later change of what was read.
    bool isSettled() const;
    std::size_t bytesInMemory() const;
    void addTo(std::vector<calendars::VersionedProblem>& problems) const;

private:
    bool isCurrent(const std::vector<WantedCalendar>& wanted) const;
    Result<void, TranslatableText> readCopy(const std::vector<WantedCalendar>& wanted,
                                            const calendars::ReadContext& context);
    void store(const std::vector<WantedCalendar>& wanted,
               std::map<std::string, icalendar::IcsFile> files);

    std::string m_path;
    DatabaseVersion m_listed; // by the last scan
    DatabaseVersion m_read;
    bool m_isReadSettled = false;
    std::vector<std::string> m_readCalendars;
    std::map<std::string, std::shared_ptr<icalendar::LoadedFile>> m_calendars; // by id
    TranslatableText m_problem;                                                // empty: none
};

} // namespace quorvel::freedesktop::thunderbird
