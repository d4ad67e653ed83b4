#include "hosting/quorvel_view_controller_new.h"

#include "agenda/quorvel_view.h"
#include "agenda/settings_store.h"
#include "hosting/agenda_hosting.h"
#include "hosting/preferred_size.h"
#include "platform/bundle.h"
#include "platform/widget_host.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr float defaultMaxHeight = 300; // points

}

QuorvelViewControllerNew::QuorvelViewControllerNew(const Platform& platform)
    : m_platform(platform)
    , m_bundle(platform.bundles.bundleForClass(className())) {}

void QuorvelViewControllerNew::loadPreferences() {
    const auto dictionary = readSettings(m_platform.preferences, m_platform.systemLog);
    if (!dictionary) {
        return;
    }
    m_maxHeight = floatSetting(*dictionary, SettingKey::maxHeight, defaultMaxHeight);
    m_limitMaxHeight = boolSetting(*dictionary, SettingKey::limitMaxHeight, false);
}

void QuorvelViewControllerNew::loadView() {
    loadAgendaView(*this, m_platform, preferredViewSize());
}

CGSize QuorvelViewControllerNew::preferredViewSize() {
    loadPreferences();
    const PreferredHeight preferred = preferredHeight(m_totalHeight, m_maxHeight, m_limitMaxHeight);
    m_totalHeight = preferred.totalHeight;
    return {widgetWidth, preferred.height};
}

void QuorvelViewControllerNew::viewDidLoad() {
    _SBUIWidgetViewController::viewDidLoad();
    clearBackground(*this);
    measureRows();
    notifySize();
}

void QuorvelViewControllerNew::hostDidDismiss() {
    _SBUIWidgetViewController::hostDidDismiss();
}

void QuorvelViewControllerNew::hostWillPresent() {
    _SBUIWidgetViewController::hostWillPresent();
    reloadAgenda(*this);
    measureRows();
    notifySize();
    SBUIWidgetHost* host = widgetHost();
    if (host != nullptr && host->respondsToInvalidatePreferredViewSize()) {
        host->invalidatePreferredViewSize();
    }
}

void QuorvelViewControllerNew::hostDidPresent() {
    _SBUIWidgetViewController::hostDidPresent();
}

void QuorvelViewControllerNew::measureRows() {
    if (const auto view = agendaView(*this)) {
        m_totalHeight = view->totalItemsHeight();
    }
}

void QuorvelViewControllerNew::notifySize() {
    SBUIWidgetHost* host = widgetHost();
    SBUIWidgetHostDelegate* delegate = host != nullptr ? host->delegate() : nullptr;
    if (delegate != nullptr && delegate->respondsToDidUpdatePreferredSize()) {
        delegate->didUpdatePreferredSize(*host, preferredViewSize());
    }
}

std::vector<std::string_view> QuorvelViewControllerNew::keys() const {
    return {"totalHeight", "maxHeight", "limitMaxHeight"};
}

KeyValue QuorvelViewControllerNew::valueForKey(std::string_view key) const {
    if (key == "totalHeight") {
        return m_totalHeight;
    }
    if (key == "maxHeight") {
        return m_maxHeight;
    }
    if (key == "limitMaxHeight") {
        return m_limitMaxHeight;
    }
    return {};
}

} // namespace quorvel
