// A window that records touch messages: views pass every one of them on until it reaches the
// window.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ui/ui_event.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_window.h"

namespace quorvel::headless {

struct TouchMessage {
    std::string view;    // the class of the view where the touch began
    std::string message; // its name on the platform
    platform::UITouchPhase phase = platform::UITouchPhase::began;
};

class RecordingWindow : public platform::UIWindow {
public:
    using UIWindow::UIWindow;

    void touchesBegan(const platform::UITouchSet& touches, platform::UIEvent& event) override {
        record("touchesBegan", touches);
        UIWindow::touchesBegan(touches, event);
    }
    void touchesMoved(const platform::UITouchSet& touches, platform::UIEvent& event) override {
        record("touchesMoved", touches);
        UIWindow::touchesMoved(touches, event);
    }
    void touchesEnded(const platform::UITouchSet& touches, platform::UIEvent& event) override {
        record("touchesEnded", touches);
        UIWindow::touchesEnded(touches, event);
    }
    void touchesCancelled(const platform::UITouchSet& touches, platform::UIEvent& event) override {
        record("touchesCancelled", touches);
        UIWindow::touchesCancelled(touches, event);
    }

    // The messages since the last call.
    std::vector<TouchMessage> takeTouchMessages() { return std::exchange(m_messages, {}); }

private:
    void record(std::string_view message, const platform::UITouchSet& touches) {
        for (const auto& touch : touches) {
            m_messages.push_back(
                {touch->view() ? std::string(touch->view()->className()) : std::string(),
                 std::string(message), touch->phase()});
        }
    }

    std::vector<TouchMessage> m_messages;
};

} // namespace quorvel::headless
