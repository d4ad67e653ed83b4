#include "freedesktop/calendars/files/calendar_source.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/calendars/files/calendar_file_names.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::string_view dataServerScheme = "eds:";

bool isAbsolute(std::string_view path) {
    return !path.empty() && path.front() == '/';
}

CalendarSource optionalFolder(std::string path) {
    CalendarSource source = CalendarSource::at(std::move(path));
    source.isOptional = true;
    return source;
}

Error failure(std::string what) {
    return {std::move(what), {}, {}};
}

} // namespace

bool mayBelongToCalendar(std::string_view name) {
    return calendars::hasCalendarSuffix(name) || calendars::isMetadataName(name);
}

Result<void> checkSource(const CalendarSource& source) {
    if (source.text) {
        return {};
    }
    if (source.name.empty()) {
        return failure("the name is empty");
    }
    if (source.name.starts_with(dataServerScheme)) {
        return failure("Evolution Data Server is named as 'eds:' alone");
    }
    struct stat status {};
    if (source.name.find('\0') != std::string::npos || stat(source.name.c_str(), &status) != 0) {
        return failure(errno == EACCES ? "it cannot be reached: permission denied"
                                       : "there is no such file or folder");
    }
    if (!S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode)) {
        return failure("it is neither a file nor a folder");
    }
    if (access(source.name.c_str(), S_ISDIR(status.st_mode) ? R_OK | X_OK : R_OK) != 0) {
        return failure("it cannot be read: " + std::generic_category().message(errno));
    }
    return {};
}

std::vector<CalendarSource> defaultCalendarSources(std::string_view xdgDataHome,
                                                   std::string_view home) {
    std::vector<CalendarSource> sources;
    if (isAbsolute(xdgDataHome)) {
        sources.push_back(optionalFolder(std::string(xdgDataHome) + "/calendars"));
    } else if (isAbsolute(home)) {
        sources.push_back(optionalFolder(std::string(home) + "/.local/share/calendars"));
    }
    if (isAbsolute(home)) {
        sources.push_back(optionalFolder(std::string(home) + "/.calendars"));
    }
    return sources;
}

} // namespace quorvel::freedesktop
