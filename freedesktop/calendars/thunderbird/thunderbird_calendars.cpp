#include "freedesktop/calendars/thunderbird/thunderbird_calendars.h"

#include <algorithm>
#include <utility>

namespace quorvel::freedesktop::thunderbird {

ThunderbirdCalendars::ThunderbirdCalendars(CalendarSource source)
    : m_source(std::move(source)) {}

void ThunderbirdCalendars::scan(const std::function<bool(std::string_view)>&) {
    const auto check = checkProfiles(m_source);
    m_problem = check || m_source.isOptional ? TranslatableText() : check.error();
    std::vector<std::unique_ptr<ProfileCalendars>> known;
    std::swap(known, m_profiles);
    if (!check) {
        return;
    }
    for (const std::string& folder : profilesOf(m_source)) {
        const auto found = std::ranges::find_if(
            known, [&](const auto& profile) { return profile && profile->folder() == folder; });
        m_profiles.push_back(found != known.end() ? std::move(*found)
                                                  : std::make_unique<ProfileCalendars>(folder));
        m_profiles.back()->scan();
    }
}

void ThunderbirdCalendars::addTo(SignatureHash& signature) const {
    signature.add(std::string_view(m_source.name));
    signature.add(m_source.isOptional);
    signature.add(std::string_view(m_problem.english()));
    signature.add(m_profiles.size());
    for (const auto& profile : m_profiles) {
        profile->addTo(signature);
    }
}

void ThunderbirdCalendars::readDatabases(const calendars::ReadContext& context) {
    for (const auto& profile : m_profiles) {
        profile->readDatabases(context);
    }
}

std::size_t ThunderbirdCalendars::bytesInMemory() const {
    std::size_t bytes = 0;
    for (const auto& profile : m_profiles) {
        bytes += profile->bytesInMemory();
    }
    return bytes;
}

void ThunderbirdCalendars::build() {
    m_calendars.clear();
    for (const auto& profile : m_profiles) {
        profile->build();
        const auto& calendars = profile->calendars();
        m_calendars.insert(m_calendars.end(), calendars.begin(), calendars.end());
    }
}

bool ThunderbirdCalendars::isReadable() const {
    return std::ranges::any_of(m_profiles,
                               [](const auto& profile) { return profile->isReadable(); });
}

bool ThunderbirdCalendars::isSettled() const {
    return std::ranges::all_of(m_profiles,
                               [](const auto& profile) { return profile->isSettled(); });
}

void ThunderbirdCalendars::addTo(std::vector<calendars::VersionedProblem>& problems) const {
    if (!m_problem.empty()) {
        problems.push_back({{m_source.name, 0, m_problem}, 0, true});
    }
    for (const auto& profile : m_profiles) {
        profile->addTo(problems);
    }
}

} // namespace quorvel::freedesktop::thunderbird
