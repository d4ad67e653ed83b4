#include "shells/headless/widget_session.h"

#include <variant>

#include "freedesktop/bundle/loaded_bundle.h"
#include "platform/sbui_widget_view_controller.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_window.h"

namespace quorvel::headless {

using platform::CGRect;
using platform::CGSize;
using platform::KeyValueCoding;
using platform::Platform;
using platform::UITableView;
using platform::UIView;
using platform::UIWindow;

namespace {

Platform withRecords(const Platform& platform, RecordingCalendarStores& stores, RecordingLog& log) {
    return Platform{platform.clock,
                    platform.dateServices,
                    stores,
                    platform.preferences,
                    platform.textMeasurer,
                    platform.imageFiles,
                    platform.graphicsContexts,
                    platform.screen,
                    log,
                    platform.bundles};
}

UITableView* frontTableBelow(const UIView& view) {
    const auto& subviews = view.subviews();
    for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview) {
        if (auto* table = dynamic_cast<UITableView*>(subview->get())) {
            return table;
        }
        if (UITableView* table = frontTableBelow(**subview)) {
            return table;
        }
    }
    return nullptr;
}

} // namespace

WidgetSession::WidgetSession(const freedesktop::LoadedBundle& bundle,
                             std::string_view controllerName, const Platform& platform)
    : m_bundle(bundle)
    , m_controllerName(controllerName.empty() ? bundle.principalClass() : controllerName)
    , m_stores(platform.calendarStores)
    , m_log(platform.systemLog)
    , m_platform(withRecords(platform, m_stores, m_log))
    , m_controller(bundle.makeController(m_controllerName, m_platform)) {
    m_controller->setWidgetHost(&m_host);
}

WidgetSession::~WidgetSession() = default;

void WidgetSession::load() {
    const std::shared_ptr<UIView>& view = m_controller->view();
    const CGRect frame{{}, view->frame().size};
    m_window = std::make_shared<UIWindow>(frame, m_platform.screen);
    m_window->addSubview(view);
    layOut();
}

void WidgetSession::present() {
    m_controller->hostWillPresent();
    m_controller->hostDidPresent();
}

void WidgetSession::dismiss() {
    m_controller->hostDidDismiss();
}

CGSize WidgetSession::preferredViewSize() {
    return m_controller->preferredViewSize();
}

void WidgetSession::resizeView(CGSize size) {
    m_window->setFrame({{}, size});
    view().setFrame({{}, size});
    layOut();
}

void WidgetSession::layOut() {
    m_window->layoutIfNeeded();
}

const KeyValueCoding& WidgetSession::controller() const {
    return *m_controller;
}

const KeyValueCoding& WidgetSession::processWideValues() const {
    return m_bundle.processWideValues();
}

UIView& WidgetSession::view() const {
    return *m_controller->view();
}

UITableView* WidgetSession::table() const {
    return frontTableBelow(view());
}

std::vector<std::shared_ptr<const KeyValueCoding>> WidgetSession::items() const {
    using Items = std::vector<std::shared_ptr<const KeyValueCoding>>;
    const platform::KeyValue value = view().valueForKey("items");
    const auto* items = std::get_if<Items>(&value);
    return items != nullptr ? *items : Items{};
}

} // namespace quorvel::headless
