#include "shells/live/live_presenter.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/wall_clock_timer.h"
#include "freedesktop/session/desktop_session.h"
#include "freedesktop/session/file_changes.h"
#include "platform/clock.h"
#include "shells/live/presentation_times.h"
#include "shells/live/subscription_refresh.h"

namespace quorvel::shells {

using freedesktop::ClockFormat;
using freedesktop::FreedesktopPlatform;
using freedesktop::SessionChanges;
using freedesktop::TimeZone;
using platform::NSDate;

namespace {

using SteadyClock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// Programs write several files in a row. A change waits this long for the next one, but no burst of
// changes is waited for longer than its limit.
constexpr Seconds pauseAfterChange{0.12};
constexpr Seconds longestBurst{0.4};

} // namespace

class LivePresenter::Schedule {
public:
    Schedule(FreedesktopPlatform& platform, std::function<void()> present,
             freedesktop::HostTimeZone hostTimeZone)
        : m_platform(platform)
        , m_present(std::move(present))
        , m_presentation([this] { presentOrPostpone(); })
        , m_timer(
              log(), [this] { m_presentation.start(0); }, [this] { handleChange(); })
        , m_files(log(), [this] { handleChange(); })
        , m_session(log(), sessionChanges(), std::move(hostTimeZone))
        , m_subscriptions(platform) {
        m_files.watch(m_platform.watchedPaths());
        m_platform.setCalendarsChangedHandler([this] { handleChange(); });
    }
    ~Schedule() { m_platform.setCalendarsChangedHandler(nullptr); }
    Schedule(const Schedule&) = delete;
    Schedule& operator=(const Schedule&) = delete;

    void restart(const std::vector<RowDescription>& rows) {
        m_presentation.stop();
        m_burstBegan.reset();
        m_isPostponed = false;
        m_files.watch(m_platform.watchedPaths());
        startTimer(rows);
        m_subscriptions.restart();
    }

    void setPaused(bool isPaused) {
        m_isPaused = isPaused;
        m_subscriptions.setPaused(isPaused);
        if (!isPaused && std::exchange(m_isPostponed, false)) {
            m_presentation.start(0);
        }
    }

    void fetchCalendars() { m_subscriptions.fetchNow(); }

private:
    platform::SystemLog& log() const { return m_platform.platform().systemLog; }

    void startTimer(const std::vector<RowDescription>& rows) {
        const platform::Platform& services = m_platform.platform();
        const NSDate next = nextPresentation(services.dateServices, services.clock.now(), rows);
        if (const auto systemInstant = m_platform.systemInstant(next)) {
            m_timer.start(*systemInstant);
        } else {
            m_timer.stop();
        }
    }

    void handleChange() {
        const SteadyClock::time_point now = SteadyClock::now();
        const Seconds sinceBurstBegan = now - m_burstBegan.value_or(now);
        m_burstBegan = m_burstBegan.value_or(now);
        m_presentation.start(std::min(pauseAfterChange, longestBurst - sinceBurstBegan).count());
    }

    void presentOrPostpone() {
        m_burstBegan.reset();
        m_isPostponed = m_isPaused;
        if (!m_isPaused) {
            const auto present = m_present; // a copy, as the call may destroy this object
            present();
        }
    }

    SessionChanges sessionChanges();

    FreedesktopPlatform& m_platform;
    std::function<void()> m_present;
    bool m_isPaused = false;
    bool m_isPostponed = false; // until the pause ends
    std::optional<SteadyClock::time_point> m_burstBegan;
    freedesktop::DelayedCall m_presentation;
    freedesktop::WallClockTimer m_timer;
    freedesktop::FileChanges m_files;
    freedesktop::DesktopSession m_session;
    SubscriptionRefresh m_subscriptions;
};

// Passes each change to the platform at once, so that the next presentation shows it.
SessionChanges LivePresenter::Schedule::sessionChanges() {
    SessionChanges changes;
    changes.onResume = [this] { handleChange(); };
    if (m_platform.followsTimeZone()) {
        changes.onTimeZone = [this](std::shared_ptr<const TimeZone> zone) {
            if (zone->identifier() != m_platform.timeZone()->identifier()) {
                m_platform.setTimeZone(std::move(zone));
                handleChange();
            }
        };
    }
    if (m_platform.followsLocale()) {
        changes.onLocale = [this](const std::string& locale) {
            if (locale != m_platform.locale()) {
                m_platform.setLocale(locale);
                handleChange();
            }
        };
        changes.onClockFormat = [this](ClockFormat clockFormat) {
            if (clockFormat != m_platform.clockFormat()) {
                m_platform.setClockFormat(clockFormat);
                handleChange();
            }
        };
    }
    return changes;
}

LivePresenter::LivePresenter(FreedesktopPlatform& platform, std::function<void()> present)
    : LivePresenter(platform, std::move(present), freedesktop::HostTimeZone()) {}

LivePresenter::LivePresenter(FreedesktopPlatform& platform, std::function<void()> present,
                             freedesktop::HostTimeZone hostTimeZone)
    : m_schedule(
          std::make_unique<Schedule>(platform, std::move(present), std::move(hostTimeZone))) {}

LivePresenter::~LivePresenter() = default;

void LivePresenter::restart(const std::vector<RowDescription>& rows) {
    m_schedule->restart(rows);
}

void LivePresenter::fetchCalendars() {
    m_schedule->fetchCalendars();
}

void LivePresenter::setPaused(bool isPaused) {
    m_schedule->setPaused(isPaused);
}

} // namespace quorvel::shells
