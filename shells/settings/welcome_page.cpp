#include "shells/settings/welcome_page.h"

#include <array>
#include <memory>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/settings/dialog_window.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::TextHandle;
using freedesktop::translated;

namespace {

struct CalendarKind {
    const char* title;
    const char* steps;
};

constexpr std::array<CalendarKind, 5> calendarKinds{{
    {text::kindDesktop, text::kindDesktopSteps},
    {text::kindOnline, text::kindOnlineSteps},
    {text::kindThunderbird, text::kindThunderbirdSteps},
    {text::kindKde, text::kindKdeSteps},
    {text::kindFile, text::kindFileSteps},
}};

constexpr int margin = 12; // points
constexpr int widest = 600;

GtkWidget* makeKind(const CalendarKind& kind) {
    GtkWidget* const row = adw_expander_row_new();
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), translated(kind.title));
    setAccessibleName(row, translated(kind.title));
    GtkWidget* const steps = makeParagraph(translated(kind.steps));
    gtk_widget_set_margin_start(steps, margin);
    gtk_widget_set_margin_end(steps, margin);
    gtk_widget_set_margin_top(steps, margin);
    gtk_widget_set_margin_bottom(steps, margin);
    adw_expander_row_add_row(ADW_EXPANDER_ROW(row), steps);
    return row;
}

// Leads to the entry of the settings.
GtkWidget* makeSubscriptionKind() {
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setRowTexts(row, translated(text::kindSubscription), translated(text::kindSubscriptionSteps));
    adw_action_row_add_suffix(row, gtk_image_new_from_icon_name("go-next-symbolic"));
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), TRUE);
    gtk_actionable_set_action_name(GTK_ACTIONABLE(row), "settings.subscribe");
    return GTK_WIDGET(row);
}

// What opens the guide, and what says that it cannot be opened.
struct Guide {
    std::string file;
    GtkWidget* button; // GTK owns these
    GtkWidget* failure;
};

void showFailure(GtkWidget* label, const std::string& file) {
    const std::string line = filled(translated(text::guideNotOpened), {file});
    gtk_label_set_text(GTK_LABEL(label), line.c_str());
    gtk_widget_set_visible(label, TRUE);
}

// The desktop's program for such files shows it.
void openGuide(GtkButton*, Guide* guide) {
    const TextHandle address(g_filename_to_uri(guide->file.c_str(), nullptr, nullptr));
    if (!address || g_app_info_launch_default_for_uri(address.get(), nullptr, nullptr) == FALSE) {
        showFailure(guide->failure, guide->file);
    }
}

void addGuide(GtkBox* box, const std::string& file) {
    auto guide = std::make_unique<Guide>(
        Guide{file, gtk_button_new_with_mnemonic(translated(text::openGuide)), makeParagraph("")});
    nameByMnemonic(guide->button, translated(text::openGuide));
    gtk_widget_set_visible(guide->failure, FALSE);
    gtk_widget_add_css_class(guide->button, "pill");
    gtk_widget_set_halign(guide->button, GTK_ALIGN_CENTER);
    gtk_widget_set_margin_top(guide->button, 2 * margin);
    gtk_widget_set_margin_bottom(guide->button, margin);
    gtk_box_append(box, guide->button);
    gtk_box_append(box, guide->failure);
    GtkWidget* const button = guide->button;
    const GClosureNotify destroy = [](gpointer data, GClosure*) {
        delete static_cast<Guide*>(data);
    };
    g_signal_connect_data(button, "clicked", G_CALLBACK(openGuide), guide.release(), destroy,
                          GConnectFlags{});
}

GtkWidget* clamped(GtkWidget* child) {
    GtkWidget* const clamp = adw_clamp_new();
    adw_clamp_set_maximum_size(ADW_CLAMP(clamp), widest);
    adw_clamp_set_child(ADW_CLAMP(clamp), child);
    return clamp;
}

} // namespace

GtkWidget* makeWelcomePage(const char* title, const std::string& guide) {
    GtkWidget* const page = adw_status_page_new();
    gtk_widget_add_css_class(page, "compact");
    adw_status_page_set_icon_name(ADW_STATUS_PAGE(page), "x-office-calendar-symbolic");
    adw_status_page_set_title(ADW_STATUS_PAGE(page), title);
    adw_status_page_set_description(ADW_STATUS_PAGE(page), translated(text::welcomeMeaning));
    GtkWidget* const kinds = adw_preferences_group_new();
    for (const CalendarKind& kind : calendarKinds) {
        adw_preferences_group_add(ADW_PREFERENCES_GROUP(kinds), makeKind(kind));
    }
    adw_preferences_group_add(ADW_PREFERENCES_GROUP(kinds), makeSubscriptionKind());
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), kinds);
    addGuide(GTK_BOX(box), guide);
    adw_status_page_set_child(ADW_STATUS_PAGE(page), clamped(box));
    gtk_widget_set_vexpand(page, TRUE);
    return page;
}

void showWelcomeDialog(GtkWidget* widget, const std::string& guide, GSimpleActionGroup* actions) {
    AdwWindow* const dialog =
        makeDialogWindow(widget, translated(text::addCalendars),
                         makeWelcomePage(translated(text::addCalendarsTitle), guide));
    gtk_widget_insert_action_group(GTK_WIDGET(dialog), "settings", G_ACTION_GROUP(actions));
    g_signal_connect_object(g_action_map_lookup_action(G_ACTION_MAP(actions), "subscribe"),
                            "activate", G_CALLBACK(gtk_window_close), dialog, G_CONNECT_SWAPPED);
    gtk_window_present(GTK_WINDOW(dialog));
}

} // namespace quorvel::settings_pages
