#include "shells/settings/settings_window.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/shortcuts_dialog.h"
#include "shells/settings/welcome_page.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::ObjectHandle;
using freedesktop::translated;

namespace {

constexpr int width = 600; // points
constexpr int height = 760;
constexpr int leastListHeight = 180;
constexpr int margin = 12;
constexpr const char* welcomeName = "welcome";
constexpr const char* settingsName = "settings";

ObjectHandle<GMenu> makeMenu() {
    ObjectHandle<GMenu> menu(g_menu_new());
    g_menu_append(menu.get(), translated(text::resetAllTitle), "settings.reset-all");
    g_menu_append(menu.get(), translated(text::shortcuts), "win.shortcuts");
    g_menu_append(menu.get(), translated(text::about), "win.about");
    return menu;
}

} // namespace

SettingsWindow::SettingsWindow(AdwApplication* application, const SettingsWindowOptions& options,
                               platform::SystemLog& log, std::function<void()> onClosed)
    : m_version(options.version)
    , m_window(
          freedesktop::share(GTK_WINDOW(adw_application_window_new(GTK_APPLICATION(application)))))
    , m_stack(gtk_stack_new())
    , m_toasts(ADW_TOAST_OVERLAY(adw_toast_overlay_new()))
    , m_page({options.preferencesFolder, options.program, options.dataFolder,
              [this](AdwToast* toast) { adw_toast_overlay_add_toast(m_toasts, toast); },
              [this](bool hasCalendars) { showWelcome(hasCalendars); }, [this] { showSettings(); },
              false, nullptr},
             log) {
    gtk_window_set_title(m_window.get(), translated(text::windowTitle));
    gtk_window_set_icon_name(m_window.get(), "org.quorvel.Quorvel");
    gtk_window_set_default_size(m_window.get(), width, height);
    gtk_stack_add_titled(GTK_STACK(m_stack), makeSettings(), settingsName,
                         translated(text::pageTitle));
    gtk_stack_add_titled(GTK_STACK(m_stack), makeWelcome(options.dataFolder + "/your-calendars.md"),
                         welcomeName, translated(text::welcomeTitle));
    addActions();
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), makeHeader());
    gtk_box_append(GTK_BOX(box), m_stack);
    adw_application_window_set_content(ADW_APPLICATION_WINDOW(m_window.get()), box);
    m_signals.connect(m_window.get(), "notify::is-active", [this] {
        if (gtk_window_is_active(m_window.get()) != FALSE) {
            m_page.refresh();
        }
    });
    m_signals.connect(m_window.get(), "destroy", std::move(onClosed));
}

SettingsWindow::~SettingsWindow() {
    gtk_window_destroy(m_window.get());
}

void SettingsWindow::present() {
    gtk_window_present(m_window.get());
}

void SettingsWindow::addActions() {
    gtk_widget_insert_action_group(GTK_WIDGET(m_window.get()), "settings", m_page.actions());
    const auto add = [this](const char* name, std::function<void()> run) {
        const ObjectHandle<GSimpleAction> action(g_simple_action_new(name, nullptr));
        m_signals.connect(action.get(), "activate", std::move(run));
        g_action_map_add_action(G_ACTION_MAP(m_window.get()), G_ACTION(action.get()));
    };
    add("shortcuts", [this] { showShortcuts(m_stack); });
    add("about", [this] { showAbout(); });
}

GtkWidget* SettingsWindow::makeHeader() {
    GtkWidget* const header = adw_header_bar_new();
    GtkWidget* const undo = makeIconButton("edit-undo-symbolic", translated(text::undoLatest));
    gtk_actionable_set_action_name(GTK_ACTIONABLE(undo), "settings.undo");
    adw_header_bar_pack_start(ADW_HEADER_BAR(header), undo);
    GtkWidget* const button = gtk_menu_button_new();
    gtk_menu_button_set_icon_name(GTK_MENU_BUTTON(button), "open-menu-symbolic");
    gtk_menu_button_set_menu_model(GTK_MENU_BUTTON(button), G_MENU_MODEL(makeMenu().get()));
    gtk_menu_button_set_primary(GTK_MENU_BUTTON(button), TRUE);
    gtk_widget_set_tooltip_text(button, translated(text::menu));
    setAccessibleName(button, translated(text::menu));
    adw_header_bar_pack_end(ADW_HEADER_BAR(header), button);
    return header;
}

// The preview stays at its place while the settings below it scroll.
GtkWidget* SettingsWindow::makeSettings() {
    GtkWidget* const page = GTK_WIDGET(m_page.page());
    gtk_widget_set_vexpand(page, TRUE);
    gtk_widget_set_size_request(page, -1, leastListHeight);
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), m_page.preview());
    gtk_box_append(GTK_BOX(box), gtk_separator_new(GTK_ORIENTATION_HORIZONTAL));
    gtk_box_append(GTK_BOX(box), page);
    adw_toast_overlay_set_child(m_toasts, box);
    return GTK_WIDGET(m_toasts);
}

GtkWidget* SettingsWindow::makeWelcome(const std::string& guide) {
    GtkWidget* const button = gtk_button_new_with_mnemonic(translated(text::goToSettings));
    nameByMnemonic(button, translated(text::goToSettings));
    gtk_widget_add_css_class(button, "suggested-action");
    gtk_widget_add_css_class(button, "pill");
    gtk_widget_set_halign(button, GTK_ALIGN_CENTER);
    gtk_widget_set_margin_top(button, margin);
    gtk_widget_set_margin_bottom(button, margin);
    m_signals.connect(button, "clicked", [this] { showSettings(); });
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), makeWelcomePage(translated(text::welcomeTitle), guide));
    gtk_box_append(GTK_BOX(box), button);
    return box;
}

void SettingsWindow::showSettings() {
    gtk_stack_set_visible_child_name(GTK_STACK(m_stack), settingsName);
}

// Only at the beginning, so that nobody is taken away from the settings; and no longer than there
// are none.
void SettingsWindow::showWelcome(bool hasCalendars) {
    if (hasCalendars) {
        showSettings();
    } else if (!m_hasListed) {
        gtk_stack_set_visible_child_name(GTK_STACK(m_stack), welcomeName);
    }
    m_hasListed = true;
}

void SettingsWindow::showAbout() {
    gtk_show_about_dialog(m_window.get(), "program-name", translated(text::applicationName),
                          "version", m_version.c_str(), "comments",
                          translated(text::applicationSummary), "license-type", GTK_LICENSE_MIT_X11,
                          "logo-icon-name", "org.quorvel.Quorvel", nullptr);
}

} // namespace quorvel::settings_pages
