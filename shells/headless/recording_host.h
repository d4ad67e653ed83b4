// A widget host that records the messages of the widget and has no other effect.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/widget_host.h"

namespace quorvel::headless {

struct HostMessage {
    std::string message;                  // its name on the platform
    std::optional<platform::CGSize> size; // points; absent for messages without a size
};

class RecordingHost : public platform::SBUIWidgetHost, private platform::SBUIWidgetHostDelegate {
public:
    platform::SBUIWidgetHostDelegate* delegate() override { return this; }
    bool respondsToInvalidatePreferredViewSize() const override { return true; }
    void invalidatePreferredViewSize() override {
        m_messages.push_back({"invalidatePreferredViewSize", std::nullopt});
    }

    // The messages since the last call.
    std::vector<HostMessage> takeMessages() { return std::exchange(m_messages, {}); }

private:
    bool respondsToDidUpdatePreferredSize() const override { return true; }
    void didUpdatePreferredSize(platform::SBUIWidgetHost&, platform::CGSize size) override {
        m_messages.push_back({"widget:didUpdatePreferredSize:", size});
    }

    std::vector<HostMessage> m_messages;
};

} // namespace quorvel::headless
