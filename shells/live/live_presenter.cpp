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

namespace quorvel::shells {

using freedesktop::ClockFormat;
using freedesktop::FreedesktopPlatform;
using freedesktop::SessionChanges;
using freedesktop::TimeZone;
using platform::NSDate;

namespace {

using SteadyClock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// Files come in bursts: what follows within the pause belongs to what came before.
constexpr Seconds pauseAfterBurst{0.12};
constexpr Seconds longestBurst{0.4};

} // namespace

class LivePresenter::Schedule {
public:
    Schedule(FreedesktopPlatform& platform, std::function<void()> present,
             freedesktop::HostTimeZone hostTimeZone)
        : m_platform(platform)
        , m_present(std::move(present))
        , m_call([this] { becomeDue(); })
        , m_timer(
              log(), [this] { m_call.start(0); }, [this] { change(); })
        , m_files(log(), [this] { change(); })
        , m_session(log(), sessionChanges(), std::move(hostTimeZone)) {
        m_files.watch(m_platform.watchedPaths());
        m_platform.setCalendarsChangedHandler([this] { change(); });
    }
    ~Schedule() { m_platform.setCalendarsChangedHandler(nullptr); }
    Schedule(const Schedule&) = delete;
    Schedule& operator=(const Schedule&) = delete;

    void presented(const std::vector<RowDescription>& rows) {
        m_call.stop();
        m_burstBegan.reset();
        m_isDue = false;
        m_files.watch(m_platform.watchedPaths());
        awaitNext(rows);
    }

    void setHeldBack(bool heldBack) {
        m_isHeldBack = heldBack;
        if (!heldBack && std::exchange(m_isDue, false)) {
            m_call.start(0);
        }
    }

private:
    platform::SystemLog& log() const { return m_platform.platform().systemLog; }

    void awaitNext(const std::vector<RowDescription>& rows) {
        const platform::Platform& services = m_platform.platform();
        const NSDate next = nextPresentation(services.dateServices, services.clock.now(), rows);
        if (const auto systemInstant = m_platform.systemInstant(next)) {
            m_timer.await(*systemInstant);
        } else {
            m_timer.stop();
        }
    }

    // Something has changed, and more may follow at once.
    void change() {
        const SteadyClock::time_point now = SteadyClock::now();
        const Seconds sinceBurstBegan = now - m_burstBegan.value_or(now);
        m_burstBegan = m_burstBegan.value_or(now);
        m_call.start(std::min(pauseAfterBurst, longestBurst - sinceBurstBegan).count());
    }

    void becomeDue() {
        m_burstBegan.reset();
        m_isDue = m_isHeldBack;
        if (!m_isHeldBack) {
            const auto present = m_present; // which may end this
            present();
        }
    }

    SessionChanges sessionChanges();

    FreedesktopPlatform& m_platform;
    std::function<void()> m_present;
    bool m_isHeldBack = false;
    bool m_isDue = false; // as soon as it is not held back
    std::optional<SteadyClock::time_point> m_burstBegan;
    freedesktop::DelayedCall m_call;
    freedesktop::WallClockTimer m_timer;
    freedesktop::FileChanges m_files;
    freedesktop::DesktopSession m_session;
};

// The platform is told at once: whatever is presented from here on follows.
SessionChanges LivePresenter::Schedule::sessionChanges() {
    SessionChanges changes;
    changes.resumed = [this] { change(); };
    if (m_platform.followsTimeZone()) {
        changes.timeZone = [this](std::shared_ptr<const TimeZone> zone) {
            if (zone->identifier() != m_platform.timeZone()->identifier()) {
                m_platform.setTimeZone(std::move(zone));
                change();
            }
        };
    }
    if (m_platform.followsLocale()) {
        changes.locale = [this](const std::string& locale) {
            if (locale != m_platform.locale()) {
                m_platform.setLocale(locale);
                change();
            }
        };
        changes.clockFormat = [this](ClockFormat clockFormat) {
            if (clockFormat != m_platform.clockFormat()) {
                m_platform.setClockFormat(clockFormat);
                change();
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

void LivePresenter::presented(const std::vector<RowDescription>& rows) {
    m_schedule->presented(rows);
}

void LivePresenter::setHeldBack(bool heldBack) {
    m_schedule->setHeldBack(heldBack);
}

} // namespace quorvel::shells
