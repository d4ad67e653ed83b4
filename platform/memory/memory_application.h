// An application object that records the links instead of opening them.
#pragma once

#include <string>
#include <vector>

#include "platform/ui_application.h"

namespace quorvel::platform::memory {

class MemoryApplication : public UIApplication {
public:
    std::vector<std::string> opened; // in order

    void openURL(const NSURL& url) override { opened.push_back(url.absoluteString()); }
};

} // namespace quorvel::platform::memory
