#include "freedesktop/calendars/thunderbird/profile_database.h"

#include <algorithm>
#include <utility>

#include "base/translatable_text.h"
#include "freedesktop/calendars/files/calendar_folder.h"
#include "freedesktop/calendars/thunderbird/calendar_database.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

std::vector<std::string> identifiersOf(const std::vector<WantedCalendar>& wanted) {
    std::vector<std::string> identifiers;
    identifiers.reserve(wanted.size());
    for (const WantedCalendar& calendar : wanted) {
        identifiers.push_back(calendar.id);
    }
    return identifiers;
}

} // namespace

ProfileDatabase::ProfileDatabase(std::string path)
    : m_path(std::move(path)) {}

void ProfileDatabase::scan() {
    m_listed = databaseVersion(m_path);
}

void ProfileDatabase::addTo(SignatureHash& signature) const {
    for (const FileVersion& file : m_listed) {
        calendars::addToSignature(file, signature);
    }
}

bool ProfileDatabase::exists() const {
    return m_listed.front() != FileVersion();
}

bool ProfileDatabase::isCurrent(const std::vector<WantedCalendar>& wanted) const {
    return m_isReadSettled && m_read == m_listed && m_readCalendars == identifiersOf(wanted);
}

void ProfileDatabase::read(const std::vector<WantedCalendar>& wanted,
                           const calendars::ReadContext& context) {
    if (isCurrent(wanted)) {
        return;
    }
    m_problem = {};
    if (exists() && !wanted.empty()) {
        if (const auto read = readCopy(wanted, context); !read) {
            m_problem = read.error();
        }
    } else {
        m_calendars.clear();
        m_read = m_listed;
        m_isReadSettled = thunderbird::isSettled(m_read, context.fileClock());
    }
    m_readCalendars = identifiersOf(wanted);
}

Result<void, TranslatableText> ProfileDatabase::readCopy(const std::vector<WantedCalendar>& wanted,
                                                         const calendars::ReadContext& context) {
    const std::int64_t readAt = context.fileClock();
    m_isReadSettled = false;
    const auto copy = DatabaseCopy::of(m_path);
    if (!copy) {
        return copy.error();
    }
    m_read = copy->version();
    m_isReadSettled = copy->isWhole() && thunderbird::isSettled(m_read, readAt);
    auto files = readCalendars(copy->path(), identifiersOf(wanted),
                               {context.zoneIsKnown, context.isCancelled});
    if (!files) {
        return copy->isWhole() ? files.error()
                               : TranslatableText(translatable(
                                     "Thunderbird is writing to it: it is read again later"));
    }
    store(wanted, *std::move(files));
    return {};
}

void ProfileDatabase::store(const std::vector<WantedCalendar>& wanted,
                            std::map<std::string, icalendar::IcsFile> files) {
    std::map<std::string, std::shared_ptr<icalendar::LoadedFile>> previous;
    std::swap(previous, m_calendars);
    SignatureHash version;
    for (const FileVersion& file : m_read) {
        calendars::addToSignature(file, version);
    }
    for (const WantedCalendar& calendar : wanted) {
        icalendar::IcsFile& file = files[calendar.id];
        std::shared_ptr<icalendar::LoadedFile>& known = previous[calendar.id];
        const bool isUnchanged = known && known->path == calendar.displayName && known->ics == file;
        m_calendars[calendar.id] =
            isUnchanged ? std::move(known)
                        : std::make_shared<icalendar::LoadedFile>(
                              calendar.displayName, version.value().first, std::move(file));
    }
}

std::shared_ptr<icalendar::LoadedFile> ProfileDatabase::calendar(const std::string& id) const {
    const auto found = m_calendars.find(id);
    return found != m_calendars.end() ? found->second : nullptr;
}

bool ProfileDatabase::isSettled() const {
    return m_isReadSettled && m_read == m_listed;
}

std::size_t ProfileDatabase::bytesInMemory() const {
    std::size_t bytes = 0;
    for (const auto& [id, file] : m_calendars) {
        bytes += file->ics.sizeInMemory();
    }
    return bytes;
}

void ProfileDatabase::addTo(std::vector<calendars::VersionedProblem>& problems) const {
    if (!m_problem.empty()) {
        problems.push_back({{m_path, 0, m_problem}, 0, true});
    }
    for (const auto& [id, file] : m_calendars) {
        for (const icalendar::FileProblem& problem : file->ics.problems) {
            problems.push_back({{file->path, 0, problem.what}, file->version});
        }
    }
}

} // namespace quorvel::freedesktop::thunderbird
