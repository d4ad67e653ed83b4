#include "freedesktop/calendars/subscriptions/copy_status.h"

#include <algorithm>
#include <chrono>

#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {

namespace {

constexpr std::int64_t minute = 60;
constexpr std::int64_t hour = 60 * minute;
constexpr std::int64_t day = 24 * hour;

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
    const std::int64_t age = std::max(seconds, minute);
    if (age < hour) {
        const auto minutes = static_cast<unsigned long>(age / minute);
        return filled(translatedPlural("{1} minute", "{1} minutes", minutes),
                      {std::to_string(minutes)});
    }
    if (age < day) {
        const auto hours = static_cast<unsigned long>(age / hour);
        return filled(translatedPlural("{1} hour", "{1} hours", hours), {std::to_string(hours)});
    }
    const auto days = static_cast<unsigned long>(age / day);
    return filled(translatedPlural("{1} day", "{1} days", days), {std::to_string(days)});
}

std::optional<TranslatableText> copyProblem(const CopyState& state, bool hasCopy,
                                            std::int64_t now) {
    if (!hasCopy && state.error.empty()) {
        return translatable("it has not been fetched yet");
    }
    if (!hasCopy) {
        return TranslatableText(translatable("it cannot be read: {1}"), {state.error});
    }
    if (state.error.empty()) {
        return std::nullopt;
    }
    if (state.confirmedAt == 0) {
        return TranslatableText(translatable("it is of unknown age: {1}"), {state.error});
    }
    return TranslatableText(
        translatable("it is {1} old: {2}"),
        {TranslatableText::verbatim(ageText(now - state.confirmedAt)), state.error});
}

} // namespace quorvel::freedesktop
