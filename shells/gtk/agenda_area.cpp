#include "shells/gtk/agenda_area.h"

#include <utility>

#include "freedesktop/glib/delayed_call.h"
#include "shells/gtk/agenda_accessible.h"
#include "shells/gtk/area_input.h"
#include "shells/host/agenda_host.h"
#include "shells/host/agenda_painting.h"

namespace quorvel::gtk {

using platform::CGFloat;
using platform::CGSize;

namespace {

double now() {
    return static_cast<double>(g_get_monotonic_time()) / G_USEC_PER_SEC;
}

// The members of the area beside those of GTK.
class AreaState {
public:
    AreaState(GtkWidget* widget, AreaFailureHandler onFailure);

    void setHost(shells::AgendaHost* host, std::shared_ptr<freedesktop::TextLines> lines);
    void close();
    AreaInput& input() { return m_input; }
    void redraw();

    void paint(cairo_t* context);
    void resize(CGSize size);
    CGSize wantedSize() const;

    // Runs the work; an exception goes to the handler, as none may leave a function that GTK calls.
    template <class Work>
    void guarded(Work work) noexcept {
        try {
            work();
        } catch (...) {
            m_onFailure(std::current_exception());
        }
    }

private:
    void startTicking();
    void advance(double time);
    void updateScrollIndicator();

    GtkWidget* m_widget;
    std::shared_ptr<freedesktop::TextLines> m_lines;
    AreaFailureHandler m_onFailure;
    AreaInput m_input;
    shells::AgendaHost* m_host = nullptr;
    shells::ScrollIndicator m_scrollIndicator;
    freedesktop::DelayedCall m_scrollIndicatorFade;
    bool m_isTicking = false; // GTK calls advance() for each frame
};

struct Area {
    GtkDrawingArea parent;
    AreaState* state;
};

struct AreaClass {
    GtkDrawingAreaClass parent;
};

AreaState* stateOf(gpointer widget) {
    return static_cast<Area*>(widget)->state;
}

AreaState::AreaState(GtkWidget* widget, AreaFailureHandler onFailure)
    : m_widget(widget)
    , m_onFailure(std::move(onFailure))
    , m_input(widget, m_onFailure)
    , m_scrollIndicatorFade([this] { startTicking(); }) {
    gtk_widget_set_can_focus(widget, TRUE);
}

void AreaState::setHost(shells::AgendaHost* host, std::shared_ptr<freedesktop::TextLines> lines) {
    m_input.setHost(host);
    m_host = host;
    m_lines = std::move(lines);
    setAccessibleRows(m_widget, m_host != nullptr ? &m_host->rows() : nullptr, m_onFailure);
    gtk_widget_queue_resize(m_widget);
    redraw();
}

void AreaState::close() {
    m_onFailure = [](const std::exception_ptr&) {};
    setHost(nullptr, nullptr);
}

void AreaState::redraw() {
    gtk_widget_queue_draw(m_widget);
    if (m_host == nullptr) {
        return;
    }
    updateScrollIndicator();
    if (m_host->window().isMoving()) {
        startTicking();
    }
}

void AreaState::updateScrollIndicator() {
    m_scrollIndicator.update(m_host->rows().scrollPosition(), now());
    if (m_scrollIndicator.isVisible(now())) {
        m_scrollIndicatorFade.start(shells::ScrollIndicator::secondsShown);
    }
}

void AreaState::startTicking() {
    if (m_isTicking) {
        return;
    }
    const GtkTickCallback tick = [](GtkWidget* widget, GdkFrameClock* clock, gpointer) -> gboolean {
        AreaState* state = stateOf(widget);
        state->guarded([&] {
            state->advance(static_cast<double>(gdk_frame_clock_get_frame_time(clock)) /
                           G_USEC_PER_SEC);
        });
        return state->m_isTicking ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
    };
    m_isTicking = true;
    gtk_widget_add_tick_callback(m_widget, tick, nullptr, nullptr);
}

void AreaState::advance(double time) {
    if (m_host != nullptr) {
        m_host->advance(time);
    }
    const bool isFading = !m_scrollIndicatorFade.isStarted() && m_scrollIndicator.isVisible(now());
    if (isFading) {
        gtk_widget_queue_draw(m_widget);
    }
    m_isTicking = m_host != nullptr && (m_host->window().isMoving() || isFading);
    if (!m_isTicking) {
        gtk_widget_queue_draw(m_widget); // without the indicator
    }
}

void AreaState::paint(cairo_t* context) {
    if (m_host != nullptr) {
        shells::paintAgenda(context, *m_host, m_lines, m_scrollIndicator.opacity(now()));
    }
}

void AreaState::resize(CGSize size) {
    if (m_host != nullptr) {
        m_host->setAreaSize(size);
    }
}

CGSize AreaState::wantedSize() const {
    return m_host != nullptr ? m_host->wantedSize() : CGSize{1, 1};
}

// The functions of the GObject class.

gboolean draw(GtkWidget* widget, cairo_t* context) {
    AreaState* state = stateOf(widget);
    state->guarded([&] { state->paint(context); });
    return FALSE;
}

GtkWidgetClass* parentClass = nullptr;

void allocateSize(GtkWidget* widget, GtkAllocation* allocation) {
    parentClass->size_allocate(widget, allocation);
    AreaState* state = stateOf(widget);
    state->guarded([&] {
        state->resize(
            {static_cast<CGFloat>(allocation->width), static_cast<CGFloat>(allocation->height)});
    });
}

void preferredWidth(GtkWidget* widget, int* minimum, int* natural) {
    *minimum = 1;
    *natural = static_cast<int>(stateOf(widget)->wantedSize().width);
}

void preferredHeight(GtkWidget* widget, int* minimum, int* natural) {
    *minimum = 1;
    *natural = static_cast<int>(stateOf(widget)->wantedSize().height);
}

gboolean handleScroll(GtkWidget* widget, GdkEventScroll* event) {
    AreaState* state = stateOf(widget);
    bool isUsed = false;
    state->guarded([&] { isUsed = state->input().scroll(*event); });
    return isUsed ? GDK_EVENT_STOP : GDK_EVENT_PROPAGATE;
}

// GTK 3 does not pass a touch that the window system cancels on to gestures. They follow the touch
// that also moves the pointer.
gboolean handleTouch(GtkWidget* widget, GdkEventTouch* event) {
    if (event->type == GDK_TOUCH_CANCEL && event->emulating_pointer != 0) {
        AreaState* state = stateOf(widget);
        state->guarded([&] { state->input().cancel(); });
    }
    return parentClass->touch_event(widget, event); // handles the gestures
}

void unmap(GtkWidget* widget) {
    AreaState* state = stateOf(widget);
    state->guarded([&] { state->input().cancel(); });
    parentClass->unmap(widget);
}

// GTK may call this more than once, and other functions afterwards.
void dispose(GObject* object) {
    AreaState* state = stateOf(object);
    state->guarded([&] { state->input().close(); });
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void finalize(GObject* object) {
    delete stateOf(object);
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initializeClass(gpointer areaClass, gpointer) {
    parentClass = GTK_WIDGET_CLASS(g_type_class_peek_parent(areaClass));
    GtkWidgetClass* widgetClass = GTK_WIDGET_CLASS(areaClass);
    widgetClass->draw = draw;
    widgetClass->size_allocate = allocateSize;
    widgetClass->get_preferred_width = preferredWidth;
    widgetClass->get_preferred_height = preferredHeight;
    widgetClass->scroll_event = handleScroll;
    widgetClass->touch_event = handleTouch;
    widgetClass->unmap = unmap;
    gtk_widget_class_set_accessible_type(widgetClass, agendaAccessibleType());
    G_OBJECT_CLASS(areaClass)->dispose = dispose;
    G_OBJECT_CLASS(areaClass)->finalize = finalize;
}

GType areaType() {
    static const GType type =
        g_type_register_static_simple(GTK_TYPE_DRAWING_AREA, "QuorvelAgendaArea", sizeof(AreaClass),
                                      initializeClass, sizeof(Area), nullptr, GTypeFlags{});
    return type;
}

} // namespace

GtkWidget* makeAgendaArea(AreaFailureHandler onFailure) {
    auto* widget = static_cast<GtkWidget*>(g_object_new(areaType(), nullptr));
    reinterpret_cast<Area*>(widget)->state = new AreaState(widget, std::move(onFailure));
    return widget;
}

void setAgendaHost(GtkWidget* area, shells::AgendaHost* host,
                   std::shared_ptr<freedesktop::TextLines> lines) {
    stateOf(area)->setHost(host, std::move(lines));
}

void closeAgendaArea(GtkWidget* area) {
    stateOf(area)->close();
}

void redrawAgendaArea(GtkWidget* area) {
    stateOf(area)->redraw();
}

void resizeAgendaArea(GtkWidget* area) {
    gtk_widget_queue_resize(area);
}

} // namespace quorvel::gtk
