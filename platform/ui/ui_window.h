// The top of a view tree on a screen. It takes the host's input and frame times.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_view.h"

namespace quorvel::platform {

class Screen;
class TouchTracking;
class UIScrollView;

// The host's report of a finger. Times are seconds on the host's frame clock, the same that
// advance() is given; they never run backwards.
struct FingerReport {
    std::int64_t finger = 0; // identifies the finger
    UITouchPhase phase = UITouchPhase::began;
    CGPoint location; // points, in the window's coordinates
    double time = 0;
};

// A finger that comes down stops what moves under it. Beyond a slop of 10 points it drags: the
// dominant axis decides, and the deepest scroll view under the finger that can move on that axis
// moves with it, alone, until the finger lifts. A second finger is ignored.
class UIWindow : public UIView {
public:
    // The screen outlives the window.
    UIWindow(const CGRect& frame, const Screen& screen);
    ~UIWindow() override;

    std::string_view className() const override { return "UIWindow"; }
    const Screen& screen() const { return m_screen; }

    void sendFinger(const FingerReport& report);
    // As if the finger that is down were taken away by the system: no action runs.
    void cancelFinger(double time);
    bool isFingerDown() const;
    // The scroll view that the finger drags; null where it drags none.
    std::shared_ptr<UIScrollView> draggedScrollView() const;

    // Moves every moving scroll view to its place at that time, which does not depend on how often
    // this is called. True while something goes on moving. A time that is no number moves nothing.
    bool advance(double time);
    bool isMoving() const;

    // The view has left the window or shows something else from now on: drags and motions at and
    // below it end at once with the content inside its edges, the finger goes on without them, and
    // their delegates get no message.
    void stopScrollingBelow(const UIView& view);

private:
    friend class UIScrollView;
    void addActive(const std::shared_ptr<UIScrollView>& view);
    double orderedFingerTime(double time);
    void beginTracking(const FingerReport& report);
    void liftFinger(const std::shared_ptr<TouchTracking>& tracking, const FingerReport& report);

    const Screen& m_screen;
    // Apart, because the reports of one frame may reach the window after the frame's time.
    double m_fingerTime = 0;
    double m_frameTime = 0;
    std::shared_ptr<TouchTracking> m_tracking;         // null while no finger is down
    std::vector<std::weak_ptr<UIScrollView>> m_active; // dragged or moving now, or earlier
};

} // namespace quorvel::platform
