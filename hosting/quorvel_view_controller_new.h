// The notification centre's widget: it is as high as its rows and reports its size to the host.
#pragma once

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "platform/sbui_widget_view_controller.h"

namespace quorvel::platform {
class NSBundle;
}

namespace quorvel {

class QuorvelViewControllerNew : public platform::_SBUIWidgetViewController {
public:
    static constexpr std::string_view className() { return "QuorvelViewControllerNew"; }

    // The services outlive the controller.
    explicit QuorvelViewControllerNew(const platform::Platform& platform);

    // The two settings that the controller uses: maxHeight and limitMaxHeight.
    void loadPreferences();

    void loadView() override;
    platform::CGSize preferredViewSize() override; // reads the settings every time
    void viewDidLoad() override;
    void hostDidDismiss() override;
    void hostWillPresent() override;
    void hostDidPresent() override;

    // The bundle that holds the class; null where the platform knows none.
    const std::shared_ptr<const platform::NSBundle>& bundle() const { return m_bundle; }
    void setBundle(std::shared_ptr<const platform::NSBundle> bundle) {
        m_bundle = std::move(bundle);
    }

    // Points, as last measured; 0 before that, -1 without rows.
    platform::CGFloat totalHeight() const { return m_totalHeight; }
    platform::CGFloat maxHeight() const { return m_maxHeight; } // points
    bool limitMaxHeight() const { return m_limitMaxHeight; }

    std::vector<std::string_view> keys() const override;
    platform::KeyValue valueForKey(std::string_view key) const override;

private:
    void measureRows();
    void notifySize();

    platform::Platform m_platform; // references: the host owns the services
    platform::CGFloat m_totalHeight = 0;
    platform::CGFloat m_maxHeight = 0;
    bool m_limitMaxHeight = false;
    std::shared_ptr<const platform::NSBundle> m_bundle;
};

} // namespace quorvel
