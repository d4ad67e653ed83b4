#include "shells/settings/unsubscribe_dialog.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

constexpr const char* cancel = "cancel";
constexpr const char* unsubscribe = "unsubscribe";

// The dialog makes its buttons itself, and for more than one layout.
void nameButtonsBelow(GtkWidget* widget) {
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (GTK_IS_BUTTON(child)) {
            const char* const label = gtk_button_get_label(GTK_BUTTON(child));
            nameByMnemonic(child, label != nullptr ? label : "");
        } else {
            nameButtonsBelow(child);
        }
    }
}

} // namespace

UnsubscribeDialog::UnsubscribeDialog(GtkWidget* widget, const std::string& title,
                                     std::function<void()> onConfirmed) {
    const std::string question = filled(translated(text::unsubscribeQuestion), {title});
    GtkWidget* const window =
        adw_message_dialog_new(GTK_WINDOW(gtk_widget_get_root(widget)), question.c_str(),
                               translated(text::unsubscribeMeaning));
    auto* const dialog = ADW_MESSAGE_DIALOG(window);
    adw_message_dialog_add_response(dialog, cancel, translated(text::cancel));
    adw_message_dialog_add_response(dialog, unsubscribe, translated(text::unsubscribe));
    adw_message_dialog_set_response_appearance(dialog, unsubscribe, ADW_RESPONSE_DESTRUCTIVE);
    adw_message_dialog_set_default_response(dialog, cancel);
    adw_message_dialog_set_close_response(dialog, cancel);
    nameButtonsBelow(window);
    gtk_window_set_destroy_with_parent(GTK_WINDOW(window), TRUE);
    m_signals.connect(window, "response::unsubscribe", std::move(onConfirmed));
    gtk_window_present(GTK_WINDOW(window));
}

} // namespace quorvel::settings_pages
