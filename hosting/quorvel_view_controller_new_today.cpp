#include "hosting/quorvel_view_controller_new_today.h"

#include "hosting/agenda_hosting.h"
#include "hosting/preferred_size.h"
#include "platform/bundle.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr CGFloat todayHeight = 270; // points

}

QuorvelViewControllerNewToday::QuorvelViewControllerNewToday(const Platform& platform)
    : m_platform(platform)
    , m_bundle(platform.bundles.bundleForClass(className())) {}

void QuorvelViewControllerNewToday::loadView() {
    loadAgendaView(*this, m_platform, preferredViewSize());
}

CGSize QuorvelViewControllerNewToday::preferredViewSize() {
    return {widgetWidth, todayHeight};
}

void QuorvelViewControllerNewToday::viewDidLoad() {
    _SBUIWidgetViewController::viewDidLoad();
    clearBackground(*this);
}

void QuorvelViewControllerNewToday::hostDidDismiss() {
    _SBUIWidgetViewController::hostDidDismiss();
}

void QuorvelViewControllerNewToday::hostWillPresent() {
    _SBUIWidgetViewController::hostWillPresent();
    reloadAgenda(*this);
}

void QuorvelViewControllerNewToday::hostDidPresent() {
    _SBUIWidgetViewController::hostDidPresent();
}

} // namespace quorvel
