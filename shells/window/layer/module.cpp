// The module around the layer shell's library, which every other start does without.
#include <gtk-layer-shell.h>

#include "shells/window/layer/layer_shell.h"

namespace quorvel::window {

namespace {

GtkLayerShellLayer layerOf(Layer layer) {
    switch (layer) {
    case Layer::background:
        return GTK_LAYER_SHELL_LAYER_BACKGROUND;
    case Layer::bottom:
        return GTK_LAYER_SHELL_LAYER_BOTTOM;
    case Layer::top:
        return GTK_LAYER_SHELL_LAYER_TOP;
    case Layer::overlay:
        break;
    }
    return GTK_LAYER_SHELL_LAYER_OVERLAY;
}

void anchor(GtkWindow* window, GtkLayerShellEdge edge, bool isAnchored, int margin) {
    gtk_layer_set_anchor(window, edge, isAnchored ? TRUE : FALSE);
    gtk_layer_set_margin(window, edge, margin);
}

void setKeyboardMode(GtkWidget* window, GtkLayerShellKeyboardMode mode) {
    gtk_layer_set_keyboard_mode(GTK_WINDOW(window), mode);
}

// Above the windows, some compositors (sway 1.7) give the keyboard to a layer that takes it on
// demand, and to nobody else, for as long as it exists. There it takes the keyboard only while the
// pointer is over it.
void takeKeyboardUnderPointer(GtkWindow* window) {
    using CrossingHandler = gboolean (*)(GtkWidget*, GdkEventCrossing*, gpointer);
    const CrossingHandler entered = [](GtkWidget* layer, GdkEventCrossing*, gpointer) -> gboolean {
        setKeyboardMode(layer, GTK_LAYER_SHELL_KEYBOARD_MODE_ON_DEMAND);
        return GDK_EVENT_PROPAGATE;
    };
    const CrossingHandler left = [](GtkWidget* layer, GdkEventCrossing* event,
                                    gpointer) -> gboolean {
        if (event->detail != GDK_NOTIFY_INFERIOR) { // to a part of the layer
            setKeyboardMode(layer, GTK_LAYER_SHELL_KEYBOARD_MODE_NONE);
        }
        return GDK_EVENT_PROPAGATE;
    };
    gtk_widget_add_events(GTK_WIDGET(window), GDK_ENTER_NOTIFY_MASK | GDK_LEAVE_NOTIFY_MASK);
    g_signal_connect(window, "enter-notify-event", G_CALLBACK(entered), nullptr);
    g_signal_connect(window, "leave-notify-event", G_CALLBACK(left), nullptr);
}

void chooseKeyboardMode(GtkWindow* window, Layer layer) {
    if (layer == Layer::top || layer == Layer::overlay) {
        takeKeyboardUnderPointer(window);
    } else {
        setKeyboardMode(GTK_WIDGET(window), GTK_LAYER_SHELL_KEYBOARD_MODE_ON_DEMAND);
    }
}

// The library prints a warning of its own where the answer is no.
bool isSupported() {
    const GLogFunc printed = g_log_set_default_handler(
        [](const char*, GLogLevelFlags, const char*, gpointer) {}, nullptr);
    const bool hasLayers = gtk_layer_is_supported() != FALSE;
    g_log_set_default_handler(printed, nullptr);
    return hasLayers;
}

void prepare(GtkWindow* window, const LayerOptions& options, GdkMonitor* monitor) {
    gtk_layer_init_for_window(window);
    gtk_layer_set_namespace(window, "quorvel");
    gtk_layer_set_layer(window, layerOf(options.layer));
    anchor(window, GTK_LAYER_SHELL_EDGE_TOP, options.anchor.top, options.margins.top);
    anchor(window, GTK_LAYER_SHELL_EDGE_RIGHT, options.anchor.right, options.margins.right);
    anchor(window, GTK_LAYER_SHELL_EDGE_BOTTOM, options.anchor.bottom, options.margins.bottom);
    anchor(window, GTK_LAYER_SHELL_EDGE_LEFT, options.anchor.left, options.margins.left);
    chooseKeyboardMode(window, options.layer);
    if (monitor != nullptr) {
        gtk_layer_set_monitor(window, monitor);
    }
}

constexpr LayerShell shell{isSupported, prepare};

} // namespace

} // namespace quorvel::window

extern "C" [[gnu::visibility("default")]] const quorvel::window::LayerShell* quorvelLayerShell() {
    return &quorvel::window::shell;
}
