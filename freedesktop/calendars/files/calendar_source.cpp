#include "freedesktop/calendars/files/calendar_source.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/calendars/files/calendar_file_names.h"
#include "freedesktop/io/system_error_text.h"

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

} // namespace

bool mayBelongToCalendar(std::string_view name) {
    return calendars::hasCalendarSuffix(name) || calendars::isMetadataName(name);
}

Result<void, TranslatableText> checkSource(const CalendarSource& source) {
    if (source.text) {
        return {};
    }
    if (source.name.empty()) {
        return TranslatableText(translatable("the name is empty"));
    }
    if (source.name.starts_with(dataServerScheme)) {
        return TranslatableText(translatable("Evolution Data Server is named as 'eds:' alone"));
    }
    struct stat status {};
    if (source.name.find('\0') != std::string::npos || stat(source.name.c_str(), &status) != 0) {
        return TranslatableText(errno == EACCES
                                    ? translatable("it cannot be reached: permission denied")
                                    : translatable("there is no such file or folder"));
    }
    if (!S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode)) {
        return TranslatableText(translatable("it is neither a file nor a folder"));
    }
    if (access(source.name.c_str(), S_ISDIR(status.st_mode) ? R_OK | X_OK : R_OK) != 0) {
        return TranslatableText{translatable("it cannot be read: {1}"), {systemErrorText(errno)}};
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
