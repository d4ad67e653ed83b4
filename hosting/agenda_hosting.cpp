#include "hosting/agenda_hosting.h"

#include "agenda/quorvel_view.h"
#include "platform/sbui_widget_view_controller.h"

namespace quorvel {

using namespace platform;

void loadAgendaView(_SBUIWidgetViewController& controller, const Platform& platform, CGSize size) {
    const auto view = std::make_shared<QuorvelView>(platform, CGRect{{0, 0}, size});
    controller.setView(view);
    view->loadFullView();
}

std::shared_ptr<QuorvelView> agendaView(_SBUIWidgetViewController& controller) {
    return std::dynamic_pointer_cast<QuorvelView>(controller.view());
}

void clearBackground(_SBUIWidgetViewController& controller) {
    controller.view()->setBackgroundColor(UIColor::clearColor());
}

void reloadAgenda(_SBUIWidgetViewController& controller) {
    if (const auto view = agendaView(controller)) {
        view->reloadItems();
    }
}

} // namespace quorvel
