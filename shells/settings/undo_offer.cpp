#include "shells/settings/undo_offer.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::TextHandle;
using freedesktop::translated;

namespace {

constexpr const char* actionName = "undo-offered";
constexpr const char* fullActionName = "settings.undo-offered";
constexpr guint timeShown = 5;       // seconds
constexpr double appearanceTime = 1; // longer than any animation of the library

std::string titleFor(const std::string& label) {
    const std::string title = filled(translated(text::changed), {label});
    const TextHandle escaped(g_markup_escape_text(title.c_str(), -1));
    return escaped.get();
}

} // namespace

UndoOffer::UndoOffer(GActionMap* actions, std::function<void(AdwToast* toast)> showToast,
                     std::function<void()> undo)
    : m_showToast(std::move(showToast))
    , m_action(g_simple_action_new(actionName, nullptr))
    , m_appeared([this] { settle(); }) {
    g_simple_action_set_enabled(m_action.get(), FALSE);
    m_signals.connect(m_action.get(), "activate", std::move(undo));
    g_action_map_add_action(actions, G_ACTION(m_action.get()));
}

void UndoOffer::show(const std::string& label) {
    m_isWithdrawn = false;
    if (m_toast) {
        adw_toast_set_title(m_toast.get(), titleFor(label).c_str());
    } else {
        addToast(titleFor(label));
    }
}

void UndoOffer::addToast(const std::string& title) {
    AdwToast* const toast = adw_toast_new(title.c_str());
    adw_toast_set_button_label(toast, translated(text::undo));
    adw_toast_set_action_name(toast, fullActionName);
    adw_toast_set_timeout(toast, timeShown);
    m_toast = freedesktop::share(toast);
    m_toastSignals = std::make_unique<SignalConnections>();
    m_toastSignals->connect(toast, "dismissed", [this] { m_toast.reset(); });
    g_simple_action_set_enabled(m_action.get(), FALSE);
    m_appeared.start(appearanceTime);
    m_showToast(toast);
}

void UndoOffer::settle() {
    g_simple_action_set_enabled(m_action.get(), TRUE);
    if (m_isWithdrawn) {
        withdraw();
    }
}

void UndoOffer::withdraw() {
    if (m_appeared.isStarted()) {
        m_isWithdrawn = true;
    } else if (const auto toast = std::exchange(m_toast, nullptr)) {
        adw_toast_dismiss(toast.get());
    }
}

} // namespace quorvel::settings_pages
