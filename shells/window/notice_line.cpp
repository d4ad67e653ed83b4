#include "shells/window/notice_line.h"

namespace quorvel::window {

namespace {

constexpr double secondsShown = 5;
constexpr unsigned fadeLength = 400; // milliseconds

} // namespace

NoticeLine::NoticeLine()
    : m_revealer(gtk_revealer_new())
    , m_label(gtk_label_new(nullptr))
    , m_fading([this] { gtk_revealer_set_reveal_child(GTK_REVEALER(m_revealer), FALSE); }) {
    gtk_revealer_set_transition_type(GTK_REVEALER(m_revealer),
                                     GTK_REVEALER_TRANSITION_TYPE_CROSSFADE);
    gtk_revealer_set_transition_duration(GTK_REVEALER(m_revealer), fadeLength);
    gtk_label_set_ellipsize(GTK_LABEL(m_label), PANGO_ELLIPSIZE_END);
    gtk_widget_set_margin_start(m_label, 12);
    gtk_widget_set_margin_end(m_label, 12);
    gtk_widget_set_margin_top(m_label, 6);
    gtk_widget_set_margin_bottom(m_label, 6);
    GtkWidget* const frame = gtk_event_box_new();
    gtk_style_context_add_class(gtk_widget_get_style_context(frame), "app-notification");
    gtk_container_add(GTK_CONTAINER(frame), m_label);
    gtk_container_add(GTK_CONTAINER(m_revealer), frame);
    gtk_widget_set_valign(m_revealer, GTK_ALIGN_END);
    gtk_widget_set_halign(m_revealer, GTK_ALIGN_FILL);
    atk_object_set_role(gtk_widget_get_accessible(m_label), ATK_ROLE_NOTIFICATION);
    gtk_widget_show_all(frame);
    gtk_widget_set_no_show_all(m_revealer, TRUE);
    // A revealer that reveals nothing would still take the presses on the rows below it.
    using Handler = void (*)(GtkRevealer*, GParamSpec*, gpointer);
    const Handler revealed = [](GtkRevealer* revealer, GParamSpec*, gpointer) {
        gtk_widget_set_visible(GTK_WIDGET(revealer), gtk_revealer_get_child_revealed(revealer));
    };
    g_signal_connect(m_revealer, "notify::child-revealed", G_CALLBACK(revealed), nullptr);
}

void NoticeLine::show(const std::string& text) {
    gtk_label_set_text(GTK_LABEL(m_label), text.c_str());
    gtk_widget_show(m_revealer);
    gtk_revealer_set_reveal_child(GTK_REVEALER(m_revealer), TRUE);
    m_fading.start(secondsShown);
}

} // namespace quorvel::window
