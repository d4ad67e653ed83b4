// The widget host's controller base class.
#pragma once

#include <memory>

#include "platform/geometry.h"
#include "platform/key_value_coding.h"

namespace quorvel::platform {

class SBUIWidgetHost;
class UIView;

// NOLINTNEXTLINE(bugprone-reserved-identifier): the host framework's own name
class _SBUIWidgetViewController : public KeyValueCoding {
public:
    _SBUIWidgetViewController() = default;
    ~_SBUIWidgetViewController() override = default;
    _SBUIWidgetViewController(const _SBUIWidgetViewController&) = delete;
    _SBUIWidgetViewController& operator=(const _SBUIWidgetViewController&) = delete;

    // Makes the view at first use: loadView, then viewDidLoad.
    const std::shared_ptr<UIView>& view();
    void setView(std::shared_ptr<UIView> view);
    bool isViewLoaded() const { return m_view != nullptr; }

    // The host that shows this widget; null before it is set. Not owned.
    SBUIWidgetHost* widgetHost() const { return m_widgetHost; }
    void setWidgetHost(SBUIWidgetHost* widgetHost) { m_widgetHost = widgetHost; }

    virtual void loadView(); // the inherited one makes an empty view
    virtual void viewDidLoad() {}
    virtual CGSize preferredViewSize() { return {}; } // points
    virtual void hostWillPresent() {}
    virtual void hostDidPresent() {}
    virtual void hostDidDismiss() {}

private:
    std::shared_ptr<UIView> m_view;
    SBUIWidgetHost* m_widgetHost = nullptr;
};

} // namespace quorvel::platform
