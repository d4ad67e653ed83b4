// The older widget hosts' controller: the same agenda at a fixed height.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/bb_wee_app_controller.h"
#include "platform/platform.h"

namespace quorvel::platform {
class NSBundle;
}

namespace quorvel {

class QuorvelView;

// The list is loaded only when the host asks for the full view, never when it appears.
class QuorvelViewController : public platform::BBWeeAppController {
public:
    static constexpr std::string_view className() { return "QuorvelViewController"; }

    // The services outlive the controller.
    explicit QuorvelViewController(const platform::Platform& platform);

    void loadFullView() override;
    std::shared_ptr<platform::UIView> view() override;
    // Makes a view of no width, which follows the host's, and leaves it empty.
    void loadView();
    // Shows the bundle's picture "Background.png", stretched; none where it is missing.
    void loadPlaceholderView() override;
    void unloadView() override;
    platform::CGFloat viewHeight() const override;
    void viewWillAppear() override {}
    void viewDidAppear() override {}
    void viewWillDisappear() override {}
    void viewDidDisappear() override {}
    // Taps the view under the point; gives the host nothing to open.
    std::optional<platform::NSURL> launchURLForTapLocation(const platform::CGPoint& point) override;

    void setView(std::shared_ptr<QuorvelView> view) { m_view = std::move(view); }
    // The bundle that holds the class; null where the platform knows none.
    const std::shared_ptr<const platform::NSBundle>& bundle() const { return m_bundle; }
    void setBundle(std::shared_ptr<const platform::NSBundle> bundle) {
        m_bundle = std::move(bundle);
    }

private:
    const std::shared_ptr<QuorvelView>& agendaView();

    platform::Platform m_platform; // references: the host owns the services
    std::shared_ptr<QuorvelView> m_view;
    std::shared_ptr<const platform::NSBundle> m_bundle;
};

} // namespace quorvel
