// The controller that an older widget host drives, instead of _SBUIWidgetViewController.
#pragma once

#include <memory>
#include <optional>

#include "platform/geometry.h"
#include "platform/key_value_coding.h"
#include "platform/ns_url.h"

namespace quorvel::platform {

class UIView;

// The host gives the view its width, and its place in a window.
class BBWeeAppController : public KeyValueCoding {
public:
    virtual std::shared_ptr<UIView> view() = 0; // made at first use; never null
    virtual void loadFullView() = 0;
    virtual void loadPlaceholderView() = 0;
    // Releases the view; the next use makes another.
    virtual void unloadView() = 0;
    virtual CGFloat viewHeight() const = 0; // points
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}
    virtual void viewDidDisappear() {}
    // The link that a tap at the point (in the view's coordinates) opens; absent: none.
    virtual std::optional<NSURL> launchURLForTapLocation(const CGPoint& point) = 0;
};

} // namespace quorvel::platform
