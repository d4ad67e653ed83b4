#include "freedesktop/session/session_locale.h"

#include <string_view>

#include "freedesktop/dates/locale_names.h"

namespace quorvel::freedesktop {

namespace {

std::string_view variable(const std::vector<std::string>& assignments, std::string_view name) {
    for (const std::string_view assignment : assignments) {
        if (assignment.substr(0, name.size()) == name && assignment.substr(name.size(), 1) == "=") {
            return assignment.substr(name.size() + 1);
        }
    }
    return {};
}

} // namespace

std::string localeOf(const SessionLocale& session) {
    for (const std::string& name : {session.lcAll, session.region}) {
        if (auto locale = canonicalLocale(name)) {
            return *locale;
        }
    }
    if (session.system) {
        return defaultLocale({}, variable(*session.system, "LC_TIME"),
                             variable(*session.system, "LANG"));
    }
    return defaultLocale({}, session.lcTime, session.lang);
}

} // namespace quorvel::freedesktop
