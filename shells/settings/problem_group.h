// The group at the top of the page that says why the settings cannot be changed.
#pragma once

#include <functional>
#include <optional>

#include <adwaita.h>

#include "base/result.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

class ProblemGroup {
public:
    explicit ProblemGroup(std::function<void()> tryAgain);
    ProblemGroup(const ProblemGroup&) = delete;
    ProblemGroup& operator=(const ProblemGroup&) = delete;

    AdwPreferencesGroup* group() const { return m_group; } // floating until it is added to a page
    void show(const std::optional<Error>& problem);        // absent: hides the group

private:
    AdwPreferencesGroup* m_group; // GTK owns these
    AdwActionRow* m_row;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
