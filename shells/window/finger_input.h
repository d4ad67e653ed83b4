// What a pointer, a touch screen and a touchpad do, as the one finger that the views know.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/geometry.h"
#include "platform/ui/ui_touch.h"

namespace quorvel::window {

class AgendaHost;

// Locations and ways are points of the area, times seconds of the frame clock. What comes without
// its beginning is passed over.
class FingerInput {
public:
    // The host outlives the input.
    explicit FingerInput(AgendaHost& host)
        : m_host(host) {}

    // A button or a finger on the screen.
    void press(const platform::CGPoint& location, double time);
    void drag(const platform::CGPoint& way, double time); // since the press
    void lift(const platform::CGPoint& way, double time);
    // Fingers on a touchpad, above which a scroll of the content by `step` was reported.
    void glide(const platform::CGPoint& pointer, const platform::CGPoint& step, double time);
    void endGlide(double time);
    // Whatever is down was taken away.
    void cancel(double time);

    bool isPressed() const { return m_touch && m_touch->finger == Finger::pressing; }
    bool isGliding() const { return m_touch && m_touch->finger == Finger::gliding; }
    // The press has become a drag that something here can follow.
    bool hasClaim() const { return m_touch && m_touch->hasClaim; }

private:
    enum class Finger : std::int64_t { pressing = 1, gliding = 2 };
    struct Touch {
        Finger finger;
        platform::CGPoint start;
        platform::CGPoint location;
        bool hasClaim = false;
        bool isTap = true;
    };

    void begin(Finger finger, const platform::CGPoint& location, double time);
    void move(const platform::CGPoint& location, double time);
    void end(double time);
    void report(platform::UITouchPhase phase, double time);

    AgendaHost& m_host;
    std::optional<Touch> m_touch;
};

} // namespace quorvel::window
