// A touch that no finger made, for hosts that report a tap without delivering it.
#pragma once

#include <memory>

#include "platform/geometry.h"
#include "platform/ns_date.h"

namespace quorvel::platform {
class UITouch;
class UITouchesEvent;
class UIView;
} // namespace quorvel::platform

// NOLINTNEXTLINE(bugprone-reserved-identifier): what the widget calls its additions to the platform
namespace quorvel::Quorvel__TouchFix {

// A finger that comes down at that point of the view's window (points, in the window's
// coordinates), on the deepest view there, which need not be the given one. Without a window, and
// where no view lies under the point, the touch has no view.
std::shared_ptr<platform::UITouch> initWithPoint(const platform::CGPoint& point,
                                                 platform::UIView& view, platform::NSDate now);

// The platform's event for the touch as it is now, made from its low-level record.
std::unique_ptr<platform::UITouchesEvent>
initWithTouch(const std::shared_ptr<platform::UITouch>& touch);

} // namespace quorvel::Quorvel__TouchFix
