#include "shells/embedding/embedded_agenda.h"

#include <chrono>
#include <exception>
#include <utility>

#include <cairo.h>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/graphics/cairo_handles.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/language/messages.h"
#include "platform/screen.h"
#include "platform/system_log.h"
#include "shells/embedding/main_context.h"
#include "shells/embedding/platform_options.h"
#include "shells/host/agenda_host.h"
#include "shells/host/agenda_painting.h"
#include "shells/host/finger_input.h"
#include "shells/host/painting.h"
#include "shells/live/live_presenter.h"

namespace quorvel::embedding {

using freedesktop::translated;
using platform::CGFloat;
using platform::CGPoint;
using platform::CGRect;
using platform::CGSize;
using platform::Platform;
using shells::AppearanceKind;

namespace {

freedesktop::ProgramFolders foldersOfLibrary() {
    return freedesktop::programFoldersOfLibrary(reinterpret_cast<const void*>(&foldersOfLibrary),
                                                QUORVEL_BUILT_COMMANDS_FROM_LIBRARY,
                                                QUORVEL_COMMANDS_FROM_LIBRARY);
}

shells::Appearance appearanceOf(bool isDark) {
    return shells::standardAppearance(isDark ? AppearanceKind::dark : AppearanceKind::light);
}

Platform servicesOf(const Platform& platform, const EmbeddedAgendaOptions& options) {
    return {platform.clock,
            platform.dateServices,
            platform.calendarStores,
            platform.preferences,
            platform.textMeasurer,
            platform.imageFiles,
            platform.graphicsContexts,
            platform.screen,
            platform.systemLog,
            platform.bundles,
            options.application != nullptr ? *options.application : platform.application,
            options.homeScreenShell != nullptr ? *options.homeScreenShell
                                               : platform.homeScreenShell};
}

bool holdsPixels(const PixelBuffer& pixels) {
    return pixels.data != nullptr && pixels.width > 0 && pixels.height > 0;
}

} // namespace

class EmbeddedAgenda::Parts final : private shells::AgendaObserver {
public:
    Parts(const EmbeddedAgendaOptions& options, freedesktop::FreedesktopOptions platformOptions)
        : m_onChanged(options.onChanged)
        , m_platform(std::move(platformOptions))
        , m_services(servicesOf(m_platform.platform(), options)) {
        m_platform.beginReadingCalendars(); // while the bundle is loaded
    }
    ~Parts() override {
        m_onChanged = nullptr;
        m_presenter.reset();
        if (m_host) {
            m_host->setObserver(nullptr);
        }
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    // Before anything else.
    Result<void> load(const EmbeddedAgendaOptions& options, const std::string& bundleFolder);

    void show() {
        if (!std::exchange(m_isShown, true)) {
            updatePause();
            m_host->present();
        }
    }
    void hide() {
        if (std::exchange(m_isShown, false)) {
            updatePause();
            m_host->dismiss();
        }
    }
    void setScale(CGFloat scale) {
        if (scale != m_services.screen.scale()) {
            m_platform.setScale(scale);
            presentIfShown();
        }
    }

    void paint(const PixelBuffer& pixels);
    bool isMoving() const {
        return m_host->window().isMoving() || m_indicator.isVisible(frameTime());
    }
    shells::AgendaHost& host() { return *m_host; }
    const shells::AgendaHost& host() const { return *m_host; }

    void press(CGPoint location, double time) {
        m_pressed = location;
        m_host->rows().dropFocus();
        m_finger->press(location, time);
    }
    void move(CGPoint location, double time) { m_finger->drag(translationTo(location), time); }
    void lift(CGPoint location, double time) { m_finger->lift(translationTo(location), time); }
    void cancelPress(double time) { m_finger->cancel(time); }

private:
    void presentIfShown() {
        if (m_isShown) {
            m_host->present();
        }
    }
    // For the main loop, which no exception may enter.
    void presentSafely() noexcept {
        try {
            presentIfShown();
        } catch (const std::exception& error) {
            m_services.systemLog.log(std::string("QRV: the agenda cannot be presented: ") +
                                     error.what());
        }
    }
    // While a finger is on a row, the row must not be exchanged below it.
    void updatePause() { m_presenter->setPaused(!m_isShown || m_host->window().isFingerDown()); }
    void notifyChanged() {
        if (m_onChanged) {
            m_onChanged();
        }
    }
    CGPoint translationTo(CGPoint location) const {
        return {location.x - m_pressed.x, location.y - m_pressed.y};
    }

    void onAppearanceChanged() override {
        m_indicator.update(m_host->rows().scrollPosition(), frameTime());
        notifyChanged();
    }
    void onWantedSizeChanged() override { notifyChanged(); }
    void onRowsChanged() override { m_presenter->restart(m_host->rows().descriptions()); }
    void onFocusMoved() override {}
    void onFingerDownChanged() override { updatePause(); }
    void onPullBecameFirm() override {}

    std::function<void()> m_onChanged;
    freedesktop::FreedesktopPlatform m_platform;
    Platform m_services;
    std::shared_ptr<const freedesktop::LoadedBundle> m_bundle;
    std::unique_ptr<shells::AgendaHost> m_host;         // these three are null until load()
    std::unique_ptr<shells::LivePresenter> m_presenter; // made before the first presentation
    std::optional<shells::FingerInput> m_finger;
    CGPoint m_pressed;
    shells::ScrollIndicator m_indicator;
    bool m_isShown = false;
};

Result<void> EmbeddedAgenda::Parts::load(const EmbeddedAgendaOptions& options,
                                         const std::string& bundleFolder) {
    auto bundle = m_platform.loadBundle(bundleFolder);
    if (!bundle) {
        return bundle.error();
    }
    m_bundle = *std::move(bundle);
    const std::string& name =
        options.controllerName.empty() ? m_bundle->principalClass() : options.controllerName;
    if (!m_bundle->hasClass(name)) {
        return Error{
            filled(translated("the bundle has no controller '{1}'"), {name}), bundleFolder, {}};
    }
    shells::AgendaHostOptions hostOptions;
    hostOptions.controllerName = name;
    hostOptions.width = options.width;
    hostOptions.calendarState = [this] {
        return shells::CalendarState{m_platform.hasReadableCalendars(),
                                     m_platform.areCalendarsLate(),
                                     m_platform.unreadableCalendars()};
    };
    hostOptions.frameTime = frameTime;
    hostOptions.appearance = appearanceOf(options.isDark);
    m_host = std::make_unique<shells::AgendaHost>(*m_bundle, m_services, std::move(hostOptions));
    m_finger.emplace(*m_host);
    m_presenter = std::make_unique<shells::LivePresenter>(m_platform, [this] { presentSafely(); });
    m_host->setObserver(this);
    updatePause();
    return {};
}

void EmbeddedAgenda::Parts::paint(const PixelBuffer& pixels) {
    if (!holdsPixels(pixels)) {
        return;
    }
    const freedesktop::SurfaceHandle surface(cairo_image_surface_create_for_data(
        pixels.data, CAIRO_FORMAT_ARGB32, pixels.width, pixels.height, pixels.stride));
    const CGFloat scale = m_services.screen.scale();
    const freedesktop::ContextHandle context(cairo_create(surface.get()));
    cairo_scale(context.get(), scale, scale);
    const CGRect all{{}, {pixels.width / scale, pixels.height / scale}};
    shells::paintBackdrop(context.get(), all, m_host->appearance().backdrop, true);
    shells::paintAgenda(context.get(), *m_host, m_platform.rendering().textLines(),
                        m_indicator.opacity(frameTime()));
    cairo_surface_flush(surface.get());
}

Result<std::unique_ptr<EmbeddedAgenda>> EmbeddedAgenda::make(const EmbeddedAgendaOptions& options) {
    const freedesktop::ProgramFolders folders = foldersOfLibrary();
    freedesktop::useCatalogs(folders.catalogs);
    auto chosen = platformOptions(options, folders);
    if (!chosen) {
        return chosen.error();
    }
    auto parts = std::make_unique<Parts>(options, *std::move(chosen));
    if (const Result<void> loaded = parts->load(options, folders.bundle); !loaded) {
        return loaded.error();
    }
    return std::unique_ptr<EmbeddedAgenda>(new EmbeddedAgenda(std::move(parts)));
}

EmbeddedAgenda::EmbeddedAgenda(std::unique_ptr<Parts> parts)
    : m_parts(std::move(parts)) {}

EmbeddedAgenda::~EmbeddedAgenda() = default;

void EmbeddedAgenda::show() {
    m_parts->show();
}

void EmbeddedAgenda::hide() {
    m_parts->hide();
}

CGSize EmbeddedAgenda::wantedSize() const {
    return m_parts->host().wantedSize();
}

void EmbeddedAgenda::setGreatestHeight(CGFloat height) {
    m_parts->host().setGreatestHeight(height);
}

void EmbeddedAgenda::setSize(CGSize size) {
    m_parts->host().setAreaSize(size);
}

void EmbeddedAgenda::setScale(CGFloat scale) {
    m_parts->setScale(scale);
}

void EmbeddedAgenda::setDark(bool isDark) {
    m_parts->host().setAppearance(appearanceOf(isDark));
}

void EmbeddedAgenda::paint(const PixelBuffer& pixels) {
    m_parts->paint(pixels);
}

double EmbeddedAgenda::frameTime() {
    using Seconds = std::chrono::duration<double>;
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void EmbeddedAgenda::press(CGPoint location, double time) {
    m_parts->press(location, time);
}

void EmbeddedAgenda::move(CGPoint location, double time) {
    m_parts->move(location, time);
}

void EmbeddedAgenda::lift(CGPoint location, double time) {
    m_parts->lift(location, time);
}

void EmbeddedAgenda::cancelPress(double time) {
    m_parts->cancelPress(time);
}

bool EmbeddedAgenda::scroll(CGPoint location, CGFloat distance) {
    return m_parts->host().scrollVertically(location, distance);
}

bool EmbeddedAgenda::isMoving() const {
    return m_parts->isMoving();
}

void EmbeddedAgenda::advance(double time) {
    m_parts->host().advance(time);
}

shells::RowList& EmbeddedAgenda::rows() {
    return m_parts->host().rows();
}

void EmbeddedAgenda::dispatch() {
    dispatchDue();
}

Wakeup EmbeddedAgenda::wakeup() {
    return nextWakeup();
}

} // namespace quorvel::embedding
