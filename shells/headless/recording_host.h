// A widget host that records its messages and does nothing by itself.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/widget_host.h"

namespace quorvel::headless {

struct HostMessage {
    std::string message;                  // by its name on the platform
    std::optional<platform::CGSize> size; // points, where the message carries one
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
