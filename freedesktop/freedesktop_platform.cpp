#include "freedesktop/freedesktop_platform.h"

#include <utility>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/bundle/loaded_bundles.h"
#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/icu_date_services.h"
#include "freedesktop/graphics/cairo_graphics_contexts.h"
#include "freedesktop/graphics/pixbuf_image_files.h"
#include "freedesktop/log/combined_log.h"
#include "freedesktop/preferences/preferences_folder.h"
#include "freedesktop/text/pango_text_measurer.h"
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

private:
    CGFloat m_scale;
};

} // namespace

struct FreedesktopPlatform::Services {
    explicit Services(FreedesktopOptions options)
        : textLines(std::make_shared<TextLines>(options.fontFamily, options.locale))
        , systemLog(std::move(options.logs))
        , dateServices(clock, options.timeZone, options.locale)
        , calendarStores(options.timeZone, std::move(options.calendarProblemHandler))
        , preferences(options.preferencesFolder, options.foundationVersionNumber, systemLog)
        , textMeasurer(textLines)
        , imageFiles(options.dataFolder)
        , screen(options.scale)
        , graphicsContexts(screen, textLines) {
        calendarStores.setSources(std::move(options.calendars));
        if (options.now) {
            clock.setNow(*options.now);
        }
    }

    // First, as it reads the list of fonts while the rest is made.
    std::shared_ptr<TextLines> textLines;
    CombinedLog systemLog;
    AdjustableClock clock;
    IcuDateServices dateServices;
    IcalCalendarStores calendarStores;
    PreferencesFolder preferences;
    PangoTextMeasurer textMeasurer;
    PixbufImageFiles imageFiles;
    ScaledScreen screen;
    CairoGraphicsContexts graphicsContexts;
    LoadedBundles bundles;
    Platform platform{clock,      dateServices,     calendarStores, preferences, textMeasurer,
                      imageFiles, graphicsContexts, screen,         systemLog,   bundles};
};

FreedesktopPlatform::FreedesktopPlatform(FreedesktopOptions options)
    : m_services(std::make_unique<Services>(std::move(options))) {}

FreedesktopPlatform::~FreedesktopPlatform() = default;

const Platform& FreedesktopPlatform::platform() const {
    return m_services->platform;
}

const std::shared_ptr<TextLines>& FreedesktopPlatform::textLines() const {
    return m_services->textLines;
}

std::shared_ptr<const LoadedBundle> FreedesktopPlatform::loadBundle(const std::string& path) {
    auto bundle = std::make_shared<const LoadedBundle>(path, m_services->screen);
    m_services->bundles.add(bundle);
    return bundle;
}

bool FreedesktopPlatform::hasReadableCalendars() const {
    return m_services->calendarStores.anyReadable() && m_services->calendarStores.anyCalendar();
}

void FreedesktopPlatform::setPreferencesFolder(const std::string& folder) {
    m_services->preferences.setFolder(folder);
}

void FreedesktopPlatform::setCalendars(std::vector<CalendarSource> calendars) {
    m_services->calendarStores.setSources(std::move(calendars));
}

void FreedesktopPlatform::setNow(platform::NSDate date) {
    m_services->clock.setNow(date);
}

} // namespace quorvel::freedesktop
