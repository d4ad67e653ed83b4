#include "shells/live/subscription_refresh.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "freedesktop/calendars/subscriptions/copy_status.h"
#include "freedesktop/freedesktop_platform.h"

namespace quorvel::shells {

using freedesktop::ChildProgram;
using freedesktop::ProgramCall;
using freedesktop::retryInterval;

namespace {

constexpr std::int64_t leastAge = 60; // seconds, of what the user wants to have fetched again

} // namespace

SubscriptionRefresh::SubscriptionRefresh(freedesktop::FreedesktopPlatform& platform)
    : m_platform(platform)
    , m_timer([this] { startIfDue(); }) {}

void SubscriptionRefresh::setPaused(bool isPaused) {
    m_isPaused = isPaused;
    restart();
}

void SubscriptionRefresh::restart() {
    const std::optional<double> seconds = m_platform.secondsUntilRefresh();
    if (!seconds || m_isPaused || m_program) {
        m_timer.stop();
        return;
    }
    const std::optional<ProgramCall> due = m_platform.refreshCall();
    m_timer.start(due ? secondsUntilAllowed(due->input, retryInterval) : *seconds);
}

void SubscriptionRefresh::fetchNow() {
    if (m_isPaused || m_program) {
        return;
    }
    const std::optional<ProgramCall> call = m_platform.refreshCallForOlderThan(leastAge);
    if (call && secondsUntilAllowed(call->input, leastAge) <= 0) {
        start(*call);
    }
    restart();
}

// A program that could not even record its failure leaves the same calendars due.
double SubscriptionRefresh::secondsUntilAllowed(const std::string& input,
                                                std::int64_t interval) const {
    if (input != m_lastInput) {
        return 0;
    }
    const std::chrono::duration<double> sinceStart = SteadyClock::now() - m_lastStart;
    return std::max(static_cast<double>(interval) - sinceStart.count(), 0.0);
}

void SubscriptionRefresh::startIfDue() {
    const std::optional<ProgramCall> due = m_platform.refreshCall();
    if (due && secondsUntilAllowed(due->input, retryInterval) <= 0) {
        start(*due);
    }
    restart();
}

void SubscriptionRefresh::start(const ProgramCall& call) {
    m_lastInput = call.input;
    m_lastStart = SteadyClock::now();
    auto program = ChildProgram::start(call, [this](int) {
        m_program.reset();
        restart();
    });
    if (program) {
        m_program = *std::move(program);
    } else if (!std::exchange(m_hasFailed, true)) {
        m_platform.platform().systemLog.log("QRV: the program '" + call.arguments.front() +
                                            "' cannot be started: " + program.error().what);
    }
}

} // namespace quorvel::shells
