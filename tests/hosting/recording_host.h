// A widget host that records the messages of the widget, and may lack either operation.
#pragma once

#include <string>
#include <vector>

#include "platform/widget_host.h"

namespace quorvel {

class RecordingHost : public platform::SBUIWidgetHost, public platform::SBUIWidgetHostDelegate {
public:
    platform::SBUIWidgetHostDelegate* delegate() override { return hasDelegate ? this : nullptr; }
    bool respondsToInvalidatePreferredViewSize() const override { return invalidates; }
    void invalidatePreferredViewSize() override { messages.emplace_back("invalidate"); }
    bool respondsToDidUpdatePreferredSize() const override { return updates; }
    void didUpdatePreferredSize(platform::SBUIWidgetHost& widget, platform::CGSize size) override {
        messages.emplace_back(&widget == this ? "update" : "update of another host");
        sizes.push_back(size);
    }

    bool hasDelegate = true;
    bool invalidates = true;
    bool updates = true;
    std::vector<std::string> messages;
    std::vector<platform::CGSize> sizes;
};

} // namespace quorvel
