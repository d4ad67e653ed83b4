// The application object, by which the widget opens links in other applications.
#pragma once

#include "platform/ns_url.h"

namespace quorvel::platform {

class UIApplication {
public:
    virtual ~UIApplication() = default;
    // Hands the link to the application that owns its scheme. Returns at once; the result is only
    // logged.
    virtual void openURL(const NSURL& url) = 0;
};

} // namespace quorvel::platform
