// The Today view's widget: the same agenda at a fixed size.
#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "platform/platform.h"
#include "platform/sbui_widget_view_controller.h"

namespace quorvel::platform {
class NSBundle;
}

namespace quorvel {

// Never measures its rows and never sends the host a message.
class QuorvelViewControllerNewToday : public platform::_SBUIWidgetViewController {
public:
    static constexpr std::string_view className() { return "QuorvelViewControllerNewToday"; }

    // The services outlive the controller.
    explicit QuorvelViewControllerNewToday(const platform::Platform& platform);

    void loadView() override;
    platform::CGSize preferredViewSize() override;
    void viewDidLoad() override;
    void hostDidDismiss() override;
    void hostWillPresent() override;
    void hostDidPresent() override;

    // The bundle that holds the class; null where the platform knows none.
    const std::shared_ptr<const platform::NSBundle>& bundle() const { return m_bundle; }
    void setBundle(std::shared_ptr<const platform::NSBundle> bundle) {
        m_bundle = std::move(bundle);
    }

private:
    platform::Platform m_platform; // references: the host owns the services
    std::shared_ptr<const platform::NSBundle> m_bundle;
};

} // namespace quorvel
