#include "shells/widget/hosted_widget.h"

#include "freedesktop/bundle/loaded_bundle.h"
#include "platform/bb_wee_app_controller.h"
#include "platform/sbui_widget_view_controller.h"
#include "platform/ui/ui_table_view.h"
#include "shells/widget/value_of.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGPoint;
using platform::CGSize;
using platform::KeyValueCoding;
using platform::NSInteger;
using platform::NSURL;
using platform::UIScrollView;
using platform::UITableView;
using platform::UIView;

namespace {

// The frontmost view of that kind, at any depth; null where there is none.
template <class Kind>
std::shared_ptr<Kind> frontViewBelow(const UIView& view) {
    const auto& subviews = view.subviews();
    for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview) {
        if (auto found = std::dynamic_pointer_cast<Kind>(*subview)) {
            return found;
        }
        if (auto found = frontViewBelow<Kind>(**subview)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

HostedWidget::HostedWidget(const freedesktop::LoadedBundle& bundle, std::string_view controllerName,
                           const platform::Platform& platform, platform::SBUIWidgetHost& host,
                           UIView& container)
    : m_bundle(bundle)
    , m_controllerName(controllerName.empty() ? bundle.principalClass() : controllerName)
    , m_container(container)
    , m_legacyController(bundle.makeWeeAppController(m_controllerName, platform)) {
    if (!m_legacyController) {
        m_controller = bundle.makeController(m_controllerName, platform).value();
        m_controller->setWidgetHost(&host);
    }
}

HostedWidget::~HostedWidget() {
    if (m_view) {
        m_view->removeFromSuperview();
    }
}

const KeyValueCoding& HostedWidget::controller() const {
    if (m_legacyController) {
        return *m_legacyController;
    }
    return *m_controller;
}

const KeyValueCoding& HostedWidget::processWideValues() const {
    return m_bundle.processWideValues();
}

UIView& HostedWidget::view() {
    showView(m_legacyController ? m_legacyController->view() : m_controller->view());
    return *m_view;
}

void HostedWidget::showView(const std::shared_ptr<UIView>& view) {
    if (m_view == view) {
        return;
    }
    if (m_view) {
        m_view->removeFromSuperview();
    }
    m_view = view;
    m_container.addSubview(view);
}

UITableView* HostedWidget::table() const {
    return m_view ? frontViewBelow<UITableView>(*m_view).get() : nullptr;
}

std::vector<std::shared_ptr<const KeyValueCoding>> HostedWidget::items() {
    using Items = std::vector<std::shared_ptr<const KeyValueCoding>>;
    return valueOf<Items>(view(), "items").value_or(Items{});
}

void HostedWidget::present() {
    if (m_legacyController) {
        m_legacyController->viewWillAppear();
        m_legacyController->viewDidAppear();
        return;
    }
    m_controller->hostWillPresent();
    m_controller->hostDidPresent();
}

void HostedWidget::dismiss() {
    if (m_legacyController) {
        m_legacyController->viewWillDisappear();
        m_legacyController->viewDidDisappear();
        return;
    }
    m_controller->hostDidDismiss();
}

CGSize HostedWidget::preferredViewSize() {
    if (m_legacyController) {
        return {m_view ? m_view->frame().size.width : 0, m_legacyController->viewHeight()};
    }
    return m_controller->preferredViewSize();
}

void HostedWidget::resizeView(CGSize size) {
    view().setFrame({{}, size});
}

void HostedWidget::loadFullView() {
    if (m_legacyController) {
        m_legacyController->loadFullView();
        view();
    }
}

void HostedWidget::loadPlaceholderView() {
    if (m_legacyController) {
        m_legacyController->loadPlaceholderView();
        view();
    }
}

void HostedWidget::unloadView() {
    if (m_legacyController) {
        m_legacyController->unloadView();
        m_view.reset();
    }
}

std::optional<NSURL> HostedWidget::launchURLForTapLocation(const CGPoint& point) {
    if (!m_legacyController) {
        return std::nullopt;
    }
    view(); // the touch is delivered in the view's window
    return m_legacyController->launchURLForTapLocation(point);
}

std::shared_ptr<UIScrollView> HostedWidget::rowScrollView(std::size_t row) const {
    const UITableView* list = table();
    const auto cell =
        list != nullptr ? list->cellForRowAtIndexPath({0, static_cast<NSInteger>(row)}) : nullptr;
    return cell ? frontViewBelow<UIScrollView>(*cell) : nullptr;
}

bool HostedWidget::scrollToRow(std::size_t row) {
    UITableView* list = table();
    if (list == nullptr || row >= static_cast<std::size_t>(list->numberOfRowsInSection(0))) {
        return false;
    }
    const platform::CGRect rect = list->rectForRowAtIndexPath({0, static_cast<NSInteger>(row)});
    for (UIView* view = list; view != nullptr; view = view->superview()) {
        if (auto* scroller = dynamic_cast<UIScrollView*>(view)) {
            scroller->scrollToShow({list->convertPointToView(rect.origin, scroller), rect.size});
        }
    }
    m_container.layoutIfNeeded();
    return true;
}

bool HostedWidget::pullRow(std::size_t row, CGFloat distance, double time) {
    if (!rowScrollView(row) && !scrollToRow(row)) {
        return false;
    }
    const auto scrollView = rowScrollView(row);
    return scrollView && scrollView->dragTo({-distance, 0}, time);
}

} // namespace quorvel::shells
