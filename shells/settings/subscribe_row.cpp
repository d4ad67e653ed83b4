#include "shells/settings/subscribe_row.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/preview_command.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/subscriptions.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

constexpr double longestRun = 150; // seconds; the command bounds its time itself
constexpr int spacing = 6;         // points
constexpr int margin = 12;
constexpr const char* wrongClass = "error";

std::string withoutLineEnd(std::string text) {
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

} // namespace

SubscribeRow::SubscribeRow(AdwPreferencesGroup* group, std::string program,
                           std::string preferencesFolder, std::function<void()> onSubscribed)
    : m_program(std::move(program))
    , m_preferencesFolder(std::move(preferencesFolder))
    , m_onSubscribed(std::move(onSubscribed))
    , m_entry(gtk_entry_new())
    , m_button(makeIconButton("list-add-symbolic", translated(text::subscribe)))
    , m_spinner(gtk_spinner_new())
    , m_message(ADW_ACTION_ROW(adw_action_row_new())) {
    addRows(group);
    m_signals.connect(m_entry, "changed", [this] { handleChange(); });
    m_signals.connect(m_entry, "activate", [this] { subscribe(); });
    m_signals.connect(m_button, "clicked", [this] { subscribe(); });
    handleChange();
    showProgress();
}

// The toolkit's own row with an entry does not report to screen readers that it has the focus.
void SubscribeRow::addRows(AdwPreferencesGroup* group) {
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing);
    gtk_widget_set_margin_start(box, margin);
    gtk_widget_set_margin_end(box, margin);
    gtk_widget_set_margin_top(box, margin);
    gtk_widget_set_margin_bottom(box, margin);
    GtkWidget* const label = gtk_label_new(translated(text::subscribeTo));
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_box_append(GTK_BOX(box), label);
    gtk_box_append(GTK_BOX(box), makeEntryLine());
    GtkWidget* const row = adw_preferences_row_new();
    gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row), box);
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
    gtk_widget_set_focusable(row, FALSE); // its entry is
    adw_preferences_group_add(group, row);
    adw_preferences_group_add(group, GTK_WIDGET(m_message));
}

GtkWidget* SubscribeRow::makeEntryLine() const {
    setAccessibleName(m_entry, translated(text::subscribeTo));
    gtk_entry_set_placeholder_text(GTK_ENTRY(m_entry), "https://example.org/team.ics");
    gtk_entry_set_input_purpose(GTK_ENTRY(m_entry), GTK_INPUT_PURPOSE_URL);
    gtk_widget_set_hexpand(m_entry, TRUE);
    setAccessibleName(m_spinner, translated(text::subscribing));
    GtkWidget* const line = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing);
    gtk_box_append(GTK_BOX(line), m_entry);
    gtk_box_append(GTK_BOX(line), m_spinner);
    gtk_box_append(GTK_BOX(line), m_button);
    return line;
}

std::string SubscribeRow::address() const {
    return gtk_editable_get_text(GTK_EDITABLE(m_entry));
}

void SubscribeRow::focus() {
    gtk_widget_grab_focus(m_entry);
    scrollIntoView(m_entry);
}

void SubscribeRow::handleChange() {
    setWrong(false, "");
    showMessage("", "");
    gtk_widget_set_sensitive(m_button, address().empty() ? FALSE : TRUE);
}

void SubscribeRow::subscribe() {
    if (m_run || address().empty()) {
        return;
    }
    setWrong(false, "");
    m_run = std::make_unique<ProgramRun>(
        subscribeCommand(m_program, m_preferencesFolder), longestRun,
        [this](const ProgramResult& result) { finish(result); }, address() + '\n');
    showProgress();
    showMessage(translated(text::subscribing), "");
}

// A failure leaves the address where it can be corrected. The command may also succeed with a
// warning.
void SubscribeRow::finish(const ProgramResult& result) {
    m_run.reset();
    showProgress();
    const std::string reason =
        result.hasSucceeded && result.errors.empty() ? "" : failureReason(result.errors);
    if (!result.hasSucceeded) {
        showMessage(translated(text::notSubscribed), reason);
        setWrong(true, reason);
        scrollIntoView(GTK_WIDGET(m_message));
        scrollIntoView(m_entry); // which is more important where there is too little space
        return;
    }
    gtk_editable_set_text(GTK_EDITABLE(m_entry), "");
    showMessage(withoutLineEnd(result.output), reason);
    m_onSubscribed();
}

// The entry stays sensitive, so that it does not lose the focus.
void SubscribeRow::showProgress() {
    const gboolean isRunning = m_run ? TRUE : FALSE;
    gtk_spinner_set_spinning(GTK_SPINNER(m_spinner), isRunning);
    gtk_widget_set_visible(m_spinner, isRunning);
    gtk_widget_set_visible(m_button, isRunning == FALSE ? TRUE : FALSE);
    gtk_editable_set_editable(GTK_EDITABLE(m_entry), isRunning == FALSE ? TRUE : FALSE);
}

void SubscribeRow::showMessage(const std::string& title, const std::string& details) {
    setRowTexts(m_message, title, details);
    gtk_widget_set_visible(GTK_WIDGET(m_message), title.empty() ? FALSE : TRUE);
}

void SubscribeRow::setWrong(bool isWrong, const std::string& reason) {
    if (isWrong) {
        gtk_widget_add_css_class(m_entry, wrongClass);
    } else {
        gtk_widget_remove_css_class(m_entry, wrongClass);
    }
    gtk_accessible_update_property(GTK_ACCESSIBLE(m_entry), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                   reason.c_str(), -1);
    gtk_accessible_update_state(
        GTK_ACCESSIBLE(m_entry), GTK_ACCESSIBLE_STATE_INVALID,
        isWrong ? GTK_ACCESSIBLE_INVALID_TRUE : GTK_ACCESSIBLE_INVALID_FALSE, -1);
}

} // namespace quorvel::settings_pages
