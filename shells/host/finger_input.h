// Turns the input of a pointer, a touch screen or a touchpad into the one finger that the views
// follow.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/geometry.h"
#include "platform/ui/ui_touch.h"

namespace quorvel::shells {

class AgendaHost;

// Locations and distances are points of the area, times seconds of the frame clock. Input without
// its beginning is ignored.
class FingerInput {
public:
    // The host outlives the input.
    explicit FingerInput(AgendaHost& host)
        : m_host(host) {}

    // A mouse button or a finger on the screen. `translation`: from the location of the press.
    void press(const platform::CGPoint& location, double time);
    void drag(const platform::CGPoint& translation, double time);
    void lift(const platform::CGPoint& translation, double time);
    // Fingers on a touchpad, which scroll the content under the pointer by `step`.
    void scroll(const platform::CGPoint& pointer, const platform::CGPoint& step, double time);
    void endScroll(double time);
    // The window system took the input away.
    void cancel(double time);

    bool isPressed() const { return m_touch && m_touch->source == Source::press; }
    bool isScrolling() const { return m_touch && m_touch->source == Source::touchpad; }
    // The press has become a drag that a view can follow, so a widget around the area must not use
    // it.
    bool isClaimed() const { return m_touch && m_touch->isClaimed; }

private:
    enum class Source : std::int64_t { press = 1, touchpad = 2 }; // also the finger's number
    struct Touch {
        Source source;
        platform::CGPoint start;
        platform::CGPoint location;
        bool isClaimed = false;
        bool isTap = true;
    };

    void begin(Source source, const platform::CGPoint& location, double time);
    void move(const platform::CGPoint& location, double time);
    void end(double time);
    void sendPhase(platform::UITouchPhase phase, double time);

    AgendaHost& m_host;
    std::optional<Touch> m_touch;
};

} // namespace quorvel::shells
