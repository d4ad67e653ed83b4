// The host's interface to a controller.
#pragma once

#include "platform/geometry.h"

namespace quorvel::platform {

class SBUIWidgetHost;

// Lays out the list of widgets.
class SBUIWidgetHostDelegate {
public:
    virtual ~SBUIWidgetHostDelegate() = default;
    virtual bool respondsToDidUpdatePreferredSize() const = 0;
    virtual void didUpdatePreferredSize(SBUIWidgetHost& widget, CGSize size) = 0;
};

// Shows one widget. A host may lack a message: the controller asks for it each time before sending.
class SBUIWidgetHost {
public:
    virtual ~SBUIWidgetHost() = default;
    virtual SBUIWidgetHostDelegate* delegate() = 0; // may be null
    virtual bool respondsToInvalidatePreferredViewSize() const = 0;
    // Asks the host to query preferredViewSize again.
    virtual void invalidatePreferredViewSize() = 0;
};

} // namespace quorvel::platform
