#include "shells/gtk/agenda_widget.h"

#include <utility>

#include "freedesktop/freedesktop_platform.h"
#include "platform/screen.h"
#include "shells/gtk/agenda_accessible.h"
#include "shells/gtk/agenda_area.h"
#include "shells/gtk/key_command.h"
#include "shells/live/live_presenter.h"

namespace quorvel::gtk {

using platform::CGFloat;
using platform::CGSize;

AgendaWidget::AgendaWidget(AgendaWidgetObserver& observer)
    : m_observer(observer)
    , m_area(makeAgendaArea(
          [this](std::exception_ptr failure) { m_observer.onFailure(std::move(failure)); })) {
    g_object_ref_sink(m_area);
    atk_object_set_name(gtk_widget_get_accessible(m_area), "Events");
}

AgendaWidget::~AgendaWidget() {
    removeContent();
    closeAgendaArea(m_area);
    g_object_unref(m_area);
}

void AgendaWidget::setContent(freedesktop::FreedesktopPlatform& platform,
                              shells::AgendaHost& host) {
    m_platform = &platform;
    m_host = &host;
    // Before the first presentation reads anything, so that no change is missed.
    m_presenter = std::make_unique<shells::LivePresenter>(platform, [this] { presentSafely(); });
    updatePause();
    m_host->setObserver(this);
    setAgendaHost(m_area, m_host, platform.rendering().textLines());
    describeNotices(); // of an earlier presentation
}

void AgendaWidget::removeContent() {
    m_presenter.reset();
    m_isShown = false;
    if (shells::AgendaHost* const host = std::exchange(m_host, nullptr)) {
        host->setObserver(nullptr);
        setAgendaHost(m_area, nullptr, nullptr);
    }
    m_platform = nullptr;
}

// Presenting.

void AgendaWidget::show() {
    if (m_host == nullptr || std::exchange(m_isShown, true)) {
        return;
    }
    updatePause();
    present();
}

void AgendaWidget::hide() {
    if (std::exchange(m_isShown, false)) {
        updatePause();
        m_host->dismiss();
    }
}

void AgendaWidget::present() {
    if (m_isShown) {
        m_host->present();
    }
}

// For the presenter, which the main loop calls: no exception may enter that.
void AgendaWidget::presentSafely() noexcept {
    try {
        present();
    } catch (...) {
        m_observer.onFailure(std::current_exception());
    }
}

// While a finger is on a row, the row must not be exchanged below it.
void AgendaWidget::updatePause() {
    if (m_presenter) {
        m_presenter->setPaused(!m_isShown || m_host->window().isFingerDown());
    }
}

void AgendaWidget::setScale(CGFloat scale) {
    if (m_platform != nullptr && scale != m_platform->platform().screen.scale()) {
        m_platform->setScale(scale);
        present();
    }
}

void AgendaWidget::setAppearance(const shells::Appearance& appearance) {
    if (m_host != nullptr) {
        m_host->setAppearance(appearance);
    }
}

void AgendaWidget::setTextScale(CGFloat scale) {
    if (m_platform != nullptr) {
        m_platform->setTextScale(scale);
        present();
    }
}

void AgendaWidget::reloadFonts() {
    if (m_platform != nullptr) {
        m_platform->reloadFonts();
        present();
    }
}

CGSize AgendaWidget::wantedSize() const {
    return m_host != nullptr ? m_host->wantedSize() : CGSize{1, 1};
}

void AgendaWidget::setGreatestHeight(CGFloat height) {
    if (m_host != nullptr) {
        m_host->setGreatestHeight(height);
    }
}

// Screen readers do not see the lines that are painted.
void AgendaWidget::describeNotices() {
    atk_object_set_description(gtk_widget_get_accessible(m_area),
                               shells::textOf(m_host->notices()).c_str());
}

bool AgendaWidget::run(KeyCommand command) {
    if (m_host == nullptr || command == KeyCommand::close) {
        return false;
    }
    if (command == KeyCommand::present) {
        present();
        m_presenter->fetchCalendars();
        return true;
    }
    shells::AgendaRows& rows = m_host->rows();
    if (command == KeyCommand::runAction) {
        if (const auto row = rows.focusedRow()) {
            rows.focusRow(*row); // scrolls to the row
            rows.runRowAction(*row);
        }
    } else if (const auto row =
                   movedFocus(command, rows.focusedRow(), rows.rowCount(), rows.pageLength())) {
        rows.focusRow(*row);
    }
    return true;
}

// What the host reports.

void AgendaWidget::onAppearanceChanged() {
    redrawAgendaArea(m_area);
}

void AgendaWidget::onWantedSizeChanged() {
    resizeAgendaArea(m_area);
    m_observer.onWantedSizeChanged();
}

void AgendaWidget::onRowsChanged() {
    m_presenter->restart(m_host->rows().descriptions());
    updateAccessibleRows(m_area);
    describeNotices();
    m_observer.onPresented();
}

void AgendaWidget::onFocusMoved() {
    updateAccessibleFocus(m_area);
}

void AgendaWidget::onFingerDownChanged() {
    updatePause();
}

} // namespace quorvel::gtk
