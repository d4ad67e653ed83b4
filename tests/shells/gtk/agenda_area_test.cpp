// Uses the real toolkit on a private display, and sends events as a window system would.
#include "shells/gtk/agenda_area.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "platform/ui/ui_window.h"
#include "shells/gtk/agenda_accessible.h"
#include "shells/host/agenda_host.h"
#include "tests/shells/host/host_fixture.h"
#include "tests/window/child_process.h"

namespace quorvel::gtk {
namespace {

using window::rest;
using window::secondsNow;

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr CGFloat farPull = 290; // points, far more than the action needs

struct EventFree {
    void operator()(GdkEvent* event) const { gdk_event_free(event); }
};
using EventHandle = std::unique_ptr<GdkEvent, EventFree>;

// The test display has no touchpad.
GdkDevice* makeTouchpad() {
    GTypeQuery query;
    g_type_query(GDK_TYPE_DEVICE, &query);
    static const GType type = g_type_register_static_simple(
        GDK_TYPE_DEVICE, "TestTouchpad", static_cast<guint>(query.class_size), nullptr,
        static_cast<guint>(query.instance_size), nullptr, GTypeFlags{});
    return GDK_DEVICE(g_object_new(type, "name", "touchpad", "input-source", GDK_SOURCE_TOUCHPAD,
                                   "input-mode", GDK_MODE_SCREEN, "has-cursor", FALSE, "display",
                                   gdk_display_get_default(), nullptr));
}

// Updates the area as a shell must.
class Shell final : public shells::AgendaObserver {
public:
    explicit Shell(GtkWidget* area)
        : m_area(area) {}
    void onAppearanceChanged() override { redrawAgendaArea(m_area); }
    void onWantedSizeChanged() override { resizeAgendaArea(m_area); }
    void onRowsChanged() override { updateAccessibleRows(m_area); }
    void onFocusMoved() override { updateAccessibleFocus(m_area); }
    void onFingerDownChanged() override {}
    void onPullBecameFirm() override {}

private:
    GtkWidget* m_area;
};

class AgendaAreaTest : public shells::HostFixture {
protected:
    AgendaAreaTest() {
        addEvents(30);
        host = makeHost(shells::notificationController);
        host->setGreatestHeight(200);
        host->present();
        shell.emplace(area);
        host->setObserver(&*shell);
        setAgendaHost(area, host.get(), lines);
        gtk_container_add(GTK_CONTAINER(box), area);
        gtk_container_add(GTK_CONTAINER(window), box);
        gtk_window_set_default_size(GTK_WINDOW(window), 320, 200);
        g_signal_connect(area, "draw",
                         G_CALLBACK(+[](GtkWidget*, cairo_t*, int* count) -> gboolean {
                             ++*count;
                             return FALSE;
                         }),
                         &draws);
        gtk_widget_show_all(window);
        pump(0.3);
    }
    ~AgendaAreaTest() override {
        host->setObserver(nullptr);
        setAgendaHost(area, nullptr, nullptr);
        gtk_widget_destroy(window);
        g_object_unref(touchpad);
        pump(0.02);
    }

    static void pump(double seconds) {
        const double end = secondsNow() + seconds;
        while (secondsNow() < end) {
            if (!g_main_context_iteration(nullptr, FALSE)) {
                rest(0.001);
            }
        }
    }

    GdkDevice* pointer() const {
        return gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_display_get_default()));
    }
    guint32 eventTime() const { return static_cast<guint32>(g_get_monotonic_time() / 1000); }
    EventHandle makeEvent(GdkEventType type, GdkDevice* source) const {
        EventHandle event(gdk_event_new(type));
        event->any.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(area)));
        gdk_event_set_device(event.get(), pointer());
        gdk_event_set_source_device(event.get(), source);
        return event;
    }
    // GDK stores this flag of the first finger behind the public part of an event.
    static void markAsPointer(GdkEvent& event) {
        constexpr guint pointerEmulated = 1U << 1U;
        auto* flags = reinterpret_cast<guint*>(reinterpret_cast<char*>(&event) + sizeof event);
        *flags |= pointerEmulated;
        ASSERT_TRUE(gdk_event_get_pointer_emulated(&event));
    }
    void sendButton(GdkEventType type, CGPoint at, guint button = 1) const {
        const EventHandle event = makeEvent(type, pointer());
        event->button.time = eventTime();
        event->button.x = at.x;
        event->button.y = at.y;
        event->button.button = button;
        gtk_main_do_event(event.get());
    }
    void sendMotion(CGPoint at) const {
        const EventHandle event = makeEvent(GDK_MOTION_NOTIFY, pointer());
        event->motion.time = eventTime();
        event->motion.x = at.x;
        event->motion.y = at.y;
        event->motion.state = GDK_BUTTON1_MASK;
        gtk_main_do_event(event.get());
    }
    void sendTouch(GdkEventType type, int finger, CGPoint at) const {
        const EventHandle event = makeEvent(type, pointer());
        event->touch.time = eventTime();
        event->touch.x = at.x;
        event->touch.y = at.y;
        event->touch.sequence = static_cast<GdkEventSequence*>(GINT_TO_POINTER(finger));
        if (finger == 1) {
            event->touch.emulating_pointer = TRUE;
            markAsPointer(*event);
        }
        gtk_main_do_event(event.get());
    }
    void sendScroll(CGPoint at, CGPoint delta, bool isStop, GdkDevice* source) const {
        const EventHandle event = makeEvent(GDK_SCROLL, source);
        event->scroll.time = eventTime();
        event->scroll.x = at.x;
        event->scroll.y = at.y;
        event->scroll.direction = GDK_SCROLL_SMOOTH;
        event->scroll.delta_x = delta.x;
        event->scroll.delta_y = delta.y;
        event->scroll.is_stop = isStop ? 1 : 0;
        gtk_main_do_event(event.get());
    }
    CGFloat offset() { return scrollerOf(*host).contentOffset().y; }

    std::vector<std::string> failures;
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* box = gtk_event_box_new();
    const std::shared_ptr<freedesktop::TextLines> lines =
        std::make_shared<freedesktop::TextLines>("sans");
    GtkWidget* area = makeAgendaArea([this](const std::exception_ptr& failure) {
        try {
            std::rethrow_exception(failure);
        } catch (const std::exception& error) {
            failures.emplace_back(error.what());
        }
    });
    GdkDevice* touchpad = makeTouchpad();
    std::unique_ptr<shells::AgendaHost> host;
    std::optional<Shell> shell;
    int draws = 0;
    const CGPoint inFirstRow{20, 10};
    const CGPoint pulled{20 + farPull, 10};
};

TEST_F(AgendaAreaTest, ResizesTheHostToItsOwnSize) {
    int least = 0;
    int natural = 0;
    gtk_widget_get_preferred_width(area, &least, &natural);
    EXPECT_EQ(natural, 320);
    gtk_widget_get_preferred_height(area, &least, &natural);
    EXPECT_EQ(natural, 200);
    EXPECT_EQ(host->window().frame(), CGRectMake(0, 0, 320, 200));
    gtk_window_resize(GTK_WINDOW(window), 400, 150);
    pump(0.3);
    EXPECT_EQ(host->window().frame(), CGRectMake(0, 0, 400, 150));
}

TEST_F(AgendaAreaTest, DrawsNothingAtRest) {
    EXPECT_GT(draws, 0);
    draws = 0;
    pump(0.5);
    EXPECT_EQ(draws, 0);
    redrawAgendaArea(area);
    pump(0.2);
    EXPECT_EQ(draws, 1);
}

TEST_F(AgendaAreaTest, APulledRowOpensItsEventAndSpringsBack) {
    sendButton(GDK_BUTTON_PRESS, inFirstRow);
    sendMotion({60, 10});
    sendMotion(pulled);
    EXPECT_NE(host->window().draggedScrollView(), nullptr);
    pump(0.2);
    sendButton(GDK_BUTTON_RELEASE, pulled);
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(0)));
    draws = 0;
    pump(0.3);
    EXPECT_GT(draws, 5) << "frames while the row moves";
    pump(1.5);
    EXPECT_FALSE(host->window().isMoving());
    draws = 0;
    pump(0.3);
    EXPECT_EQ(draws, 0) << "and none afterwards";
}

TEST_F(AgendaAreaTest, OtherButtonsPullNothing) {
    sendButton(GDK_BUTTON_PRESS, inFirstRow, 3);
    sendMotion(pulled);
    sendButton(GDK_BUTTON_RELEASE, pulled, 3);
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(AgendaAreaTest, AFingerPullsAndASecondOneIsIgnored) {
    sendTouch(GDK_TOUCH_BEGIN, 1, inFirstRow);
    sendTouch(GDK_TOUCH_UPDATE, 1, {60, 10});
    sendTouch(GDK_TOUCH_BEGIN, 2, {200, 100});
    sendTouch(GDK_TOUCH_UPDATE, 2, {200, 10});
    sendTouch(GDK_TOUCH_UPDATE, 1, pulled);
    sendTouch(GDK_TOUCH_END, 2, {200, 10});
    EXPECT_TRUE(host->window().isFingerDown());
    EXPECT_EQ(offset(), 0);
    pump(0.2);
    sendTouch(GDK_TOUCH_END, 1, pulled);
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(0)));
}

TEST_F(AgendaAreaTest, ACancelledTouchOpensNothing) {
    sendTouch(GDK_TOUCH_BEGIN, 1, inFirstRow);
    sendTouch(GDK_TOUCH_UPDATE, 1, pulled);
    sendTouch(GDK_TOUCH_BEGIN, 2, {200, 100});
    sendTouch(GDK_TOUCH_CANCEL, 2, {200, 100});
    EXPECT_TRUE(host->window().isFingerDown()) << "that was another finger";
    sendTouch(GDK_TOUCH_CANCEL, 1, pulled);
    EXPECT_FALSE(host->window().isFingerDown());
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(AgendaAreaTest, HidingTheAreaCancelsInput) {
    sendButton(GDK_BUTTON_PRESS, inFirstRow);
    sendMotion(pulled);
    EXPECT_TRUE(host->window().isFingerDown());
    gtk_widget_hide(area);
    EXPECT_FALSE(host->window().isFingerDown());
    gtk_widget_show(area);
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(AgendaAreaTest, ABrokenGrabCancelsInput) {
    sendButton(GDK_BUTTON_PRESS, inFirstRow);
    sendMotion(pulled);
    const EventHandle event = makeEvent(GDK_GRAB_BROKEN, pointer());
    gtk_main_do_event(event.get());
    EXPECT_FALSE(host->window().isFingerDown());
    EXPECT_THAT(takeOpened(), IsEmpty());
}

TEST_F(AgendaAreaTest, RemovingTheHostCancelsInput) {
    sendButton(GDK_BUTTON_PRESS, inFirstRow);
    sendMotion(pulled);
    setAgendaHost(area, nullptr, nullptr);
    EXPECT_FALSE(host->window().isFingerDown());
    sendButton(GDK_BUTTON_RELEASE, pulled);
    sendButton(GDK_BUTTON_PRESS, inFirstRow);
    sendScroll(inFirstRow, {0, 3}, false, pointer());
    pump(0.1);
    EXPECT_THAT(takeOpened(), IsEmpty());
    EXPECT_THAT(failures, IsEmpty());
}

// A widget around the area, such as a page, may follow horizontal drags too.
TEST_F(AgendaAreaTest, ClaimsADragThatPullsARow) {
    double distance = 0;
    GtkGesture* page = gtk_gesture_drag_new(box);
    g_signal_connect(page, "drag-update",
                     G_CALLBACK(+[](GtkGestureDrag*, double across, double, double* latest) {
                         *latest = across;
                     }),
                     &distance);
    sendTouch(GDK_TOUCH_BEGIN, 1, inFirstRow);
    sendTouch(GDK_TOUCH_UPDATE, 1, {28, 10});
    EXPECT_EQ(distance, 8) << "not claimed yet";
    sendTouch(GDK_TOUCH_UPDATE, 1, {29, 10});
    sendTouch(GDK_TOUCH_UPDATE, 1, {60, 10});
    EXPECT_EQ(distance, 8) << "claimed by the area";
    EXPECT_NE(host->window().draggedScrollView(), nullptr);
    sendTouch(GDK_TOUCH_END, 1, {60, 10});
    EXPECT_FALSE(host->window().isFingerDown());

    host->setAreaSize({320, 5000});
    sendTouch(GDK_TOUCH_BEGIN, 1, {20, 190});
    sendTouch(GDK_TOUCH_UPDATE, 1, {20, 150});
    sendTouch(GDK_TOUCH_UPDATE, 1, {50, 150});
    EXPECT_EQ(distance, 30) << "no view can scroll vertically";
    sendTouch(GDK_TOUCH_END, 1, {20, 150});
    g_object_unref(page);
}

TEST_F(AgendaAreaTest, AWheelScrollsInStepsWithinTheEdges) {
    sendScroll({100, 100}, {0, 1}, false, pointer());
    EXPECT_EQ(offset(), 57);
    sendScroll({100, 100}, {0, -5}, false, pointer());
    EXPECT_EQ(offset(), 0);
    sendScroll({100, 100}, {1, 0}, false, pointer());
    EXPECT_EQ(offset(), 0);
    pump(0.3);
    EXPECT_FALSE(host->window().isFingerDown());
}

TEST_F(AgendaAreaTest, ATouchpadPullsAndLiftsAtItsStopEvent) {
    for (int step = 0; step < 10; ++step) {
        sendScroll(inFirstRow, {-3, 0}, false, touchpad);
    }
    EXPECT_TRUE(host->window().isFingerDown());
    EXPECT_THAT(takeOpened(), IsEmpty());
    sendScroll(inFirstRow, {0, 0}, true, touchpad);
    EXPECT_FALSE(host->window().isFingerDown());
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(0)));
}

TEST_F(AgendaAreaTest, ATouchpadThatPausesLiftsToo) {
    sendScroll(inFirstRow, {0, 2}, false, touchpad);
    EXPECT_TRUE(host->window().isFingerDown());
    pump(0.4);
    EXPECT_FALSE(host->window().isFingerDown());
    EXPECT_EQ(offset(), 14) << "24 points but the slop";
}

TEST_F(AgendaAreaTest, ReportsExceptionsWhileDrawing) {
    struct Failing : UIView {
        using UIView::UIView;
        void drawRect(GraphicsContext&) override { throw std::runtime_error("no paint"); }
    };
    const auto failing = std::make_shared<Failing>(CGRectMake(0, 0, 10, 10));
    host->window().addSubview(failing);
    redrawAgendaArea(area);
    pump(0.2);
    EXPECT_THAT(failures, ElementsAre("no paint"));
    failing->removeFromSuperview();
    redrawAgendaArea(area);
    pump(0.2);
    EXPECT_EQ(failures.size(), 1U);
}

} // namespace
} // namespace quorvel::gtk
