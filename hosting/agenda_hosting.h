// The steps with the agenda view that the controllers share.
#pragma once

#include <memory>

#include "platform/geometry.h"
#include "platform/platform.h"

namespace quorvel::platform {
class _SBUIWidgetViewController; // NOLINT(bugprone-reserved-identifier): the platform's name
}

namespace quorvel {

class QuorvelView;

// Makes a view of that size (points), installs it as the controller's and fills it.
void loadAgendaView(platform::_SBUIWidgetViewController& controller,
                    const platform::Platform& platform, platform::CGSize size);

// The controller's view, made where there is none yet; null where a host has replaced it by a view
// of another kind.
std::shared_ptr<QuorvelView> agendaView(platform::_SBUIWidgetViewController& controller);

void clearBackground(platform::_SBUIWidgetViewController& controller);
void reloadAgenda(platform::_SBUIWidgetViewController& controller);

} // namespace quorvel
