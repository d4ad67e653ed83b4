#include "shells/host/agenda_host.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "platform/clock.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view_cell.h"
#include "platform/ui_application.h"
#include "shells/widget/hosted_widget.h"
#include "shells/widget/notice_views.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGPoint;
using platform::CGRect;
using platform::CGSize;
using platform::FingerReport;
using platform::UIScrollView;
using platform::UIView;
using platform::UIWindow;

namespace {

constexpr CGFloat standardWidth = 320; // points, where neither the user nor the widget chooses one

CGFloat windowLength(CGFloat length) {
    constexpr CGFloat greatest = std::numeric_limits<std::int16_t>::max(); // of a window
    return std::clamp(std::ceil(length), 1.0, greatest);
}

// The view itself or the nearest view of that kind around it.
template <class Kind>
Kind* nearestOfKind(UIView* view) {
    for (; view != nullptr; view = view->superview()) {
        if (auto* found = dynamic_cast<Kind*>(view)) {
            return found;
        }
    }
    return nullptr;
}

// Whether a drag that begins on the view would move it or a view that contains it.
bool anyCanMove(UIView* view, bool (UIScrollView::*canMove)() const) {
    for (auto* scroller = nearestOfKind<UIScrollView>(view); scroller != nullptr;
         scroller = nearestOfKind<UIScrollView>(scroller->superview())) {
        if ((scroller->*canMove)()) {
            return true;
        }
    }
    return false;
}

CGFloat lowestOffset(const UIScrollView& view) {
    return std::max(view.contentSize().height - view.bounds().size.height, 0.0);
}

// False where the content is at that edge already, or cannot be scrolled at all.
bool scrollWithinEdges(UIScrollView& view, CGFloat distance) {
    if (!view.canMoveVertically() || view.isDragging()) {
        return false;
    }
    const CGPoint offset = view.contentOffset();
    const CGFloat target = std::clamp(offset.y + distance, 0.0, lowestOffset(view));
    if (target == offset.y) {
        return false;
    }
    view.setContentOffset({offset.x, target});
    return true;
}

} // namespace

AgendaHost::AgendaHost(const freedesktop::LoadedBundle& bundle, const platform::Platform& platform,
                       AgendaHostOptions options)
    : m_platform(platform)
    , m_options(std::move(options))
    , m_window(std::make_shared<UIWindow>(CGRect{}, platform.screen))
    , m_scroller(std::make_shared<UIScrollView>())
    , m_greatestHeight(std::numeric_limits<CGFloat>::infinity()) {
    m_window->addSubview(m_scroller);
    m_notices = std::make_unique<NoticeViews>(platform.textMeasurer, *m_window);
    m_widget = std::make_unique<HostedWidget>(bundle, m_options.controllerName, platform, *this,
                                              *m_scroller);
    m_rows = std::make_unique<AgendaRows>(
        *m_widget, *m_scroller, m_options.frameTime,
        AgendaRows::Handlers{[this] { notify(&AgendaObserver::onAppearanceChanged); },
                             [this] {
                                 notify(&AgendaObserver::onFocusMoved);
                                 notify(&AgendaObserver::onAppearanceChanged);
                             }});
}

AgendaHost::~AgendaHost() = default;

void AgendaHost::notify(void (AgendaObserver::*event)()) {
    if (m_observer != nullptr) {
        (m_observer->*event)();
    }
}

// Presenting, and the sizes that follow from it.

void AgendaHost::present() {
    const CGSize oldSize = wantedSize();
    if (!std::exchange(m_isFirstSizeKnown, true)) {
        requestFirstSize();
    }
    m_isSizeInvalid = false;
    presentWidget();
    if (m_isSizeInvalid) {
        m_preferredSize = m_widget->preferredViewSize();
    }
    updateNotices();
    applyAppearance();
    layOut();
    m_rows->reload();
    notify(&AgendaObserver::onRowsChanged);
    if (wantedSize() != oldSize) {
        notify(&AgendaObserver::onWantedSizeChanged);
    }
    notify(&AgendaObserver::onAppearanceChanged);
}

// In the order of a notification centre: first the size, then the view, which may report another
// size.
void AgendaHost::requestFirstSize() {
    m_preferredSize = m_widget->preferredViewSize();
    if (!m_widget->isLegacy()) {
        m_widget->view();
    }
}

// Older hosts unload the view when they hide it, and load it again when they show it.
void AgendaHost::presentWidget() {
    if (m_widget->isLegacy()) {
        m_widget->unloadView();
        m_widget->loadPlaceholderView();
        m_widget->loadFullView();
    }
    m_widget->present();
}

void AgendaHost::setAppearance(const Appearance& appearance) {
    m_options.appearance = appearance;
    applyAppearance();
    layOut();
    notify(&AgendaObserver::onAppearanceChanged);
}

void AgendaHost::applyAppearance() {
    shells::applyAppearance(m_options.appearance, *m_widget);
    m_notices->setAppearance(m_options.appearance);
}

void AgendaHost::dismiss() {
    m_widget->dismiss();
}

void AgendaHost::didUpdatePreferredSize(platform::SBUIWidgetHost&, CGSize size) {
    m_preferredSize = size;
}

const Notices& AgendaHost::notices() const {
    return m_notices->notices();
}

void AgendaHost::updateNotices() {
    const CalendarState calendars = m_options.calendarState();
    m_hasCalendars = calendars.hasReadable;
    m_notices->show(
        noticesOf(*m_widget, calendars, m_platform.dateServices, m_platform.clock.now()));
    m_scroller->setHidden(!m_hasCalendars);
}

CGFloat AgendaHost::width() const {
    if (m_areaSize) {
        return m_areaSize->width;
    }
    if (m_options.width) {
        return *m_options.width;
    }
    return m_preferredSize.width > 0 ? m_preferredSize.width : standardWidth;
}

// The settings are not trusted, so the widget's size may be any number.
CGFloat AgendaHost::contentHeight() const {
    return std::isfinite(m_preferredSize.height) ? std::max(m_preferredSize.height, 0.0) : 0;
}

CGSize AgendaHost::wantedSize() const {
    const CGFloat widgetHeight = m_hasCalendars ? contentHeight() : 0;
    const CGFloat height =
        std::max(widgetHeight, m_notices->lineHeight()) + m_notices->problemHeight();
    return {windowLength(width()), windowLength(std::min(height, m_greatestHeight))};
}

void AgendaHost::setGreatestHeight(CGFloat height) {
    const CGSize oldSize = wantedSize();
    m_greatestHeight = height;
    if (wantedSize() != oldSize) {
        notify(&AgendaObserver::onWantedSizeChanged);
    }
}

void AgendaHost::setAreaSize(CGSize size) {
    if (m_areaSize != size) {
        m_areaSize = size;
        layOut();
        notify(&AgendaObserver::onAppearanceChanged);
    }
}

void AgendaHost::layOut() {
    const CGRect area{{}, m_areaSize.value_or(wantedSize())};
    const CGFloat rowsHeight = std::max(area.size.height - m_notices->problemHeight(), 0.0);
    m_window->setFrame(area);
    m_scroller->setFrame({{}, {area.size.width, rowsHeight}});
    m_notices->layOut(area);
    if (m_widget->hasView()) {
        m_widget->resizeView({area.size.width, contentHeight()});
    }
    m_scroller->setContentSize({area.size.width, contentHeight()});
    if (!m_scroller->isDragging() && !m_scroller->isDecelerating()) {
        const CGFloat offset = m_scroller->contentOffset().y;
        m_scroller->setContentOffset({0, std::clamp(offset, 0.0, lowestOffset(*m_scroller))});
    }
    m_window->layoutIfNeeded();
}

// Input.

std::shared_ptr<UIView> AgendaHost::viewAt(const CGPoint& location) {
    m_window->layoutIfNeeded();
    return m_window->hitTest(location);
}

bool AgendaHost::isChanging() const {
    return m_window->isMoving() || m_window->draggedScrollView() != nullptr;
}

void AgendaHost::sendFinger(const FingerReport& report) {
    const bool wasChanging = isChanging();
    const bool wasDown = m_window->isFingerDown();
    m_window->layoutIfNeeded();
    m_window->sendFinger(report);
    if (wasChanging || isChanging()) {
        notify(&AgendaObserver::onAppearanceChanged);
    }
    notifyFirmPull();
    if (m_window->isFingerDown() != wasDown) {
        notify(&AgendaObserver::onFingerDownChanged);
    }
}

// Once for each time that the finger passes the distance.
void AgendaHost::notifyFirmPull() {
    bool isAnyFirm = false;
    if (m_window->isFingerDown() && m_window->draggedScrollView() != nullptr) {
        const std::vector<RowPull> pulls = m_rows->pulls();
        isAnyFirm = std::any_of(pulls.begin(), pulls.end(), isFirm);
    }
    if (isAnyFirm != std::exchange(m_isPullFirm, isAnyFirm) && isAnyFirm) {
        notify(&AgendaObserver::onPullBecameFirm);
    }
}

void AgendaHost::cancelFinger(double time) {
    if (m_window->isFingerDown()) {
        m_window->cancelFinger(time);
        notify(&AgendaObserver::onAppearanceChanged);
        notify(&AgendaObserver::onFingerDownChanged);
    }
}

// Only a controller for older hosts returns a link for a tap.
void AgendaHost::tap(const CGPoint& location) {
    if (!m_widget->isLegacy() || !m_widget->hasView()) {
        return;
    }
    UIView& view = m_widget->view();
    const CGPoint inView = m_window->convertPointToView(location, &view);
    if (!view.pointInside(inView)) {
        return;
    }
    if (const auto url = m_widget->launchURLForTapLocation(inView)) {
        m_platform.application.openURL(*url);
    }
}

void AgendaHost::advance(double time) {
    if (m_window->isMoving()) {
        m_window->advance(time);
        notify(&AgendaObserver::onAppearanceChanged);
    }
}

bool AgendaHost::scrollVertically(const CGPoint& location, CGFloat distance) {
    const auto view = viewAt(location);
    for (auto* scroller = nearestOfKind<UIScrollView>(view.get()); scroller != nullptr;
         scroller = nearestOfKind<UIScrollView>(scroller->superview())) {
        if (scrollWithinEdges(*scroller, distance)) {
            notify(&AgendaObserver::onAppearanceChanged);
            return true;
        }
    }
    return false;
}

bool AgendaHost::isOnRow(const CGPoint& location) {
    return nearestOfKind<platform::UITableViewCell>(viewAt(location).get()) != nullptr;
}

bool AgendaHost::canDragHorizontally(const CGPoint& location) {
    return anyCanMove(viewAt(location).get(), &UIScrollView::canMoveHorizontally);
}

bool AgendaHost::canDragVertically(const CGPoint& location) {
    return anyCanMove(viewAt(location).get(), &UIScrollView::canMoveVertically);
}

} // namespace quorvel::shells
