// Asks the user whether a subscription is to end.
#pragma once

#include <functional>
#include <string>

#include <adwaita.h>

#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

class UnsubscribeDialog {
public:
    // Opens the dialog in front of the window of the widget. `title`: of the calendar.
    // `onConfirmed` may destroy the object.
    UnsubscribeDialog(GtkWidget* widget, const std::string& title,
                      std::function<void()> onConfirmed);
    UnsubscribeDialog(const UnsubscribeDialog&) = delete;
    UnsubscribeDialog& operator=(const UnsubscribeDialog&) = delete;

private:
    SignalConnections m_signals; // without them an answer has no effect
};

} // namespace quorvel::settings_pages
