// The application object: the way out of the widget to the other applications.
#pragma once

#include "platform/ns_url.h"

namespace quorvel::platform {

class UIApplication {
public:
    virtual ~UIApplication() = default;
    // Hands the link to whichever application owns its scheme. Returns at once; what comes of it is
    // told to the log alone.
    virtual void openURL(const NSURL& url) = 0;
};

} // namespace quorvel::platform
