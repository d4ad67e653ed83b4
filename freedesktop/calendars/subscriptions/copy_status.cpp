#include "freedesktop/calendars/subscriptions/copy_status.h"

#include <algorithm>
#include <chrono>

namespace quorvel::freedesktop {

namespace {

constexpr std::int64_t minute = 60;
constexpr std::int64_t hour = 60 * minute;
constexpr std::int64_t day = 24 * hour;

std::string counted(std::int64_t count, const char* one, const char* unit) {
    return count == 1 ? one : std::to_string(count) + " " + unit;
}

} // namespace

std::int64_t systemSeconds() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

std::int64_t nextRefresh(const CopyState& state, bool hasCopy, std::int64_t now) {
    const bool isUnknown = state.triedAt == 0 || (!hasCopy && state.error.empty());
    if (isUnknown || state.triedAt > now) { // or the clock was set back
        return now;
    }
    return state.triedAt + (state.error.empty() ? refreshInterval : retryInterval);
}

std::string ageText(std::int64_t seconds) {
    seconds = std::max<std::int64_t>(seconds, 0);
    if (seconds < hour) {
        return counted(std::max<std::int64_t>(seconds / minute, 1), "a minute", "minutes");
    }
    if (seconds < day) {
        return counted(seconds / hour, "an hour", "hours");
    }
    return counted(seconds / day, "a day", "days");
}

std::optional<std::string> copyProblem(const CopyState& state, bool hasCopy, std::int64_t now) {
    if (!hasCopy) {
        return state.error.empty() ? "it has not been fetched yet"
                                   : "it cannot be read: " + state.error;
    }
    if (state.error.empty()) {
        return std::nullopt;
    }
    if (state.confirmedAt == 0) {
        return "it is shown as it was fetched at an unknown time: " + state.error;
    }
    return "it is shown as of " + ageText(now - state.confirmedAt) + " ago: " + state.error;
}

} // namespace quorvel::freedesktop
