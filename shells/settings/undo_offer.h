// The short notice of a change, with a button that undoes it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <adwaita.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/handles.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

// One notice at a time: a change while it is shown only replaces its text. It must not be dismissed
// while it appears, as libadwaita 1.2 then uses freed memory.
class UndoOffer {
public:
    // `showToast` takes the toast. `undo` is called when the user presses the button. The actions
    // get the one that the button activates.
    UndoOffer(GActionMap* actions, std::function<void(AdwToast* toast)> showToast,
              std::function<void()> undo);
    UndoOffer(const UndoOffer&) = delete;
    UndoOffer& operator=(const UndoOffer&) = delete;

    void show(const std::string& label); // of what has changed
    void withdraw();                     // nothing is left to be undone, or it is undone otherwise

private:
    void addToast(const std::string& title);
    void settle();

    std::function<void(AdwToast*)> m_showToast;
    freedesktop::ObjectHandle<GSimpleAction> m_action; // enabled once the toast has appeared
    freedesktop::ObjectHandle<AdwToast> m_toast;       // null: none, or it disappears already
    bool m_isWithdrawn = false;                        // as soon as it has appeared
    freedesktop::DelayedCall m_appeared;
    SignalConnections m_signals;
    std::unique_ptr<SignalConnections> m_toastSignals; // null before the first toast
};

} // namespace quorvel::settings_pages
