// The root of a tree of views on a screen. It receives the host's input and frame times.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ui/ui_label_colors.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_view.h"

namespace quorvel::platform {

class Screen;
class TouchTracking;
class UIScrollView;

// The host's report of a finger. Times are seconds of the host's frame clock, as for advance(), and
// never decrease.
struct FingerReport {
    std::int64_t finger = 0; // identifies the finger
    UITouchPhase phase = UITouchPhase::began;
    CGPoint location; // points, in the window's coordinates
    double time = 0;
};

// A finger that comes down stops the motions under it. After a slop of 10 points it drags the
// innermost scroll view under it that can move along the dominant axis, and only that one, until it
// lifts. A second finger is ignored.
class UIWindow : public UIView {
public:
    // The screen outlives the window.
    UIWindow(const CGRect& frame, const Screen& screen);
    ~UIWindow() override;

    std::string_view className() const override { return "UIWindow"; }
    const Screen& screen() const { return m_screen; }

    // The host's colours for the labels in the window; none by default.
    const UILabelColors& labelColors() const { return m_labelColors; }
    void setLabelColors(const UILabelColors& colors) { m_labelColors = colors; }

    void sendFinger(const FingerReport& report);
    // The system has taken the finger away: no action runs.
    void cancelFinger(double time);
    bool isFingerDown() const;
    // The scroll view that the finger drags; null: none.
    std::shared_ptr<UIScrollView> draggedScrollView() const;

    // Advances all motions to that time; the result does not depend on how often this is called.
    // True while something still moves. NaN moves nothing.
    bool advance(double time);
    bool isMoving() const;

    // For a view that leaves the window or shows other content: ends drags and motions at and below
    // it immediately, with the content within its edges and without messages to delegates.
    void stopScrollingBelow(const UIView& view);

private:
    friend class UIScrollView;
    void addActive(const std::shared_ptr<UIScrollView>& view);
    double orderedFingerTime(double time);
    void beginTracking(const FingerReport& report);
    void liftFinger(const std::shared_ptr<TouchTracking>& tracking, const FingerReport& report);

    const Screen& m_screen;
    UILabelColors m_labelColors;
    // Separate, as reports may arrive after the time of their frame.
    double m_fingerTime = 0;
    double m_frameTime = 0;
    std::shared_ptr<TouchTracking> m_tracking;         // null while no finger is down
    std::vector<std::weak_ptr<UIScrollView>> m_active; // are or were dragged or moving
};

} // namespace quorvel::platform
