#include "platform/sbui_widget_view_controller.h"

#include <utility>

#include "platform/ui/ui_view.h"

namespace quorvel::platform {

const std::shared_ptr<UIView>& _SBUIWidgetViewController::view() {
    if (!m_view) {
        loadView();
        viewDidLoad();
    }
    return m_view;
}

void _SBUIWidgetViewController::setView(std::shared_ptr<UIView> view) {
    m_view = std::move(view);
}

void _SBUIWidgetViewController::loadView() {
    setView(std::make_shared<UIView>());
}

} // namespace quorvel::platform
