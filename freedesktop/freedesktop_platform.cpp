#include "freedesktop/freedesktop_platform.h"

#include <utility>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/bundle/loaded_bundles.h"
#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/icu_date_services.h"
#include "freedesktop/launch/no_launcher.h"
#include "freedesktop/log/combined_log.h"
#include "freedesktop/preferences/preferences_folder.h"
#include "freedesktop/rendering/unseen_rendering.h"
#include "freedesktop/user_calendars.h"
#include "platform/screen.h"

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::Platform;

namespace {

class ScaledScreen final : public platform::Screen {
public:
    explicit ScaledScreen(CGFloat scale)
        : m_scale(scale) {}
    CGFloat scale() const override { return m_scale; }
    void setScale(CGFloat scale) { m_scale = scale; }

private:
    CGFloat m_scale;
};

std::unique_ptr<Rendering> makeRendering(const FreedesktopOptions& options) {
    if (!options.makeRendering) {
        return std::make_unique<UnseenRendering>();
    }
    return options.makeRendering(
        {options.fontFamily, options.locale, options.textScale, options.dataFolder});
}

std::unique_ptr<Launcher> makeLauncher(const FreedesktopOptions& options,
                                       platform::SystemLog& log) {
    return options.makeLauncher ? options.makeLauncher(log) : std::make_unique<NoLauncher>();
}

// The files of a copy of a calendar.
bool mayBelongToCopy(std::string_view name) {
    return name == "calendar.ics" || name == "state";
}

} // namespace

struct FreedesktopPlatform::Services {
    explicit Services(FreedesktopOptions options)
        : followsTimeZone(options.followsTimeZone)
        , followsLocale(options.followsLocale)
        , timeZone(options.timeZone)
        , locale(options.locale)
        , clockFormat(options.clockFormat)
        , rendering(freedesktop::makeRendering(options))
        , systemLog(std::move(options.logs))
        , dateServices(clock, timeZone, locale)
        , calendars({timeZone, std::move(options.calendarProblemHandler),
                     std::move(options.dataServerModule), options.desktop, options.dataServerWaits,
                     options.backgroundServerWaits, options.subscriptions})
        , preferences(options.preferencesFolder, options.foundationVersionNumber, systemLog)
        , screen(options.scale)
        , graphicsContexts(rendering->makeGraphicsContexts(screen))
        , launcher(freedesktop::makeLauncher(options, systemLog)) {
        dateServices.setClockFormat(clockFormat);
        launcher->setLinkProgram(std::move(options.linkProgram));
        calendars.setSources(std::move(options.calendars));
        if (!options.calendarIndexFolder.empty()) {
            calendars.setIndex(options.calendarIndexFolder,
                               [this](const std::string& what) { systemLog.log(what); });
        }
        if (options.calendarWaits) {
            calendars.setWaits(*options.calendarWaits);
        }
        preferences.setProblemHandler(std::move(options.preferencesProblemHandler));
        preferences.setDeselectedCalendars([this] { return calendars.deselected(); });
        if (options.now && options.clockRuns) {
            clock.runFrom(*options.now);
        } else if (options.now) {
            clock.setNow(*options.now);
        }
    }

    bool followsTimeZone;
    bool followsLocale;
    std::shared_ptr<const TimeZone> timeZone;
    std::string locale;
    ClockFormat clockFormat;
    // The first service, because it may load the list of fonts in the background. Never null.
    std::unique_ptr<Rendering> rendering;
    CombinedLog systemLog;
    AdjustableClock clock;
    IcuDateServices dateServices;
    UserCalendars calendars;
    PreferencesFolder preferences;
    ScaledScreen screen;
    std::unique_ptr<platform::GraphicsContexts> graphicsContexts; // never null
    LoadedBundles bundles;
    std::unique_ptr<Launcher> launcher; // never null
    Platform platform{clock,
                      dateServices,
                      calendars.stores(),
                      preferences,
                      rendering->textMeasurer(),
                      rendering->imageFiles(),
                      *graphicsContexts,
                      screen,
                      systemLog,
                      bundles,
                      *launcher,
                      *launcher};
};

FreedesktopPlatform::FreedesktopPlatform(FreedesktopOptions options)
    : m_services(std::make_unique<Services>(std::move(options))) {}

FreedesktopPlatform::~FreedesktopPlatform() = default;

const Platform& FreedesktopPlatform::platform() const {
    return m_services->platform;
}

Rendering& FreedesktopPlatform::rendering() const {
    return *m_services->rendering;
}

Result<std::shared_ptr<const LoadedBundle>>
FreedesktopPlatform::loadBundle(const std::string& path) {
    auto bundle = LoadedBundle::load(path, m_services->screen);
    if (bundle) {
        m_services->bundles.add(*bundle);
    }
    return bundle;
}

void FreedesktopPlatform::beginReadingCalendars() {
    m_services->calendars.beginReading();
}

bool FreedesktopPlatform::hasReadableCalendars() const {
    return m_services->calendars.anyReadable();
}

std::vector<CalendarProblem> FreedesktopPlatform::unreadableCalendars() const {
    return m_services->calendars.unreadable();
}

bool FreedesktopPlatform::areCalendarsLate() const {
    return m_services->calendars.isLate();
}

std::string FreedesktopPlatform::storeOfCalendar(std::string_view identifier) const {
    return m_services->calendars.storeOf(identifier);
}

void FreedesktopPlatform::setPreferencesFolder(const std::string& folder) {
    m_services->preferences.setFolder(folder);
    m_services->calendars.setSubscriptionListFolder(folder);
}

void FreedesktopPlatform::setCalendars(std::vector<CalendarSource> calendars) {
    m_services->calendars.setSources(std::move(calendars));
}

void FreedesktopPlatform::setNow(platform::NSDate date) {
    m_services->clock.setNow(date);
}

void FreedesktopPlatform::setTimeZone(std::shared_ptr<const TimeZone> zone) {
    m_services->timeZone = std::move(zone);
    m_services->dateServices.setTimeZone(m_services->timeZone);
    m_services->calendars.setTimeZone(m_services->timeZone);
}

void FreedesktopPlatform::setLocale(const std::string& locale) {
    m_services->locale = locale;
    m_services->dateServices.setLocale(locale);
    m_services->rendering->setLocale(locale);
}

void FreedesktopPlatform::setClockFormat(ClockFormat clockFormat) {
    m_services->clockFormat = clockFormat;
    m_services->dateServices.setClockFormat(clockFormat);
}

void FreedesktopPlatform::setScale(CGFloat scale) {
    m_services->screen.setScale(scale);
}

void FreedesktopPlatform::setTextScale(CGFloat scale) {
    m_services->rendering->setTextScale(scale);
}

void FreedesktopPlatform::reloadFonts() {
    m_services->rendering->reloadFonts();
}

bool FreedesktopPlatform::followsTimeZone() const {
    return m_services->followsTimeZone;
}

bool FreedesktopPlatform::followsLocale() const {
    return m_services->followsLocale;
}

const std::shared_ptr<const TimeZone>& FreedesktopPlatform::timeZone() const {
    return m_services->timeZone;
}

const std::string& FreedesktopPlatform::locale() const {
    return m_services->locale;
}

ClockFormat FreedesktopPlatform::clockFormat() const {
    return m_services->clockFormat;
}

std::optional<platform::NSDate> FreedesktopPlatform::systemInstant(platform::NSDate instant) const {
    return m_services->clock.systemInstant(instant);
}

std::vector<WatchedPath> FreedesktopPlatform::watchedPaths() const {
    std::vector<WatchedPath> paths{{m_services->preferences.folder(), 0, mayHoldPropertyList}};
    const std::vector<WatchedPath> ofCalendars = m_services->calendars.watchedPaths();
    paths.insert(paths.end(), ofCalendars.begin(), ofCalendars.end());
    for (std::string& folder : m_services->calendars.subscriptions().folders()) {
        paths.push_back({std::move(folder), 0, mayBelongToCopy});
    }
    return paths;
}

std::optional<double> FreedesktopPlatform::secondsUntilRefresh() const {
    return m_services->calendars.subscriptions().secondsUntilRefresh();
}

std::optional<ProgramCall> FreedesktopPlatform::refreshCall() const {
    return m_services->calendars.subscriptions().refreshCall();
}

std::optional<ProgramCall>
FreedesktopPlatform::refreshCallForOlderThan(std::int64_t seconds) const {
    return m_services->calendars.subscriptions().refreshCallForOlderThan(seconds);
}

void FreedesktopPlatform::setCalendarsChangedHandler(std::function<void()> onChange) {
    m_services->calendars.setChangedHandler(std::move(onChange));
}

void FreedesktopPlatform::setLaunchContext(LaunchContext* context) {
    m_services->launcher->setLaunchContext(context);
}

void FreedesktopPlatform::setLaunchFailureHandler(std::function<void(const Error&)> onFailure) {
    m_services->launcher->setFailureHandler(std::move(onFailure));
}

bool FreedesktopPlatform::waitForLaunches(double seconds) {
    return m_services->launcher->waitForLaunches(seconds);
}

} // namespace quorvel::freedesktop
