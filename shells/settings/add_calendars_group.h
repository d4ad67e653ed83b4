// The group with what adds calendars: a subscription, and how others are added.
#pragma once

#include <functional>
#include <string>

#include <adwaita.h>

#include "shells/settings/signal_connections.h"
#include "shells/settings/subscribe_row.h"

namespace quorvel::settings_pages {

struct AddCalendarsOptions {
    std::string program; // the path of `quorvel`
    std::string preferencesFolder;
    std::string guide;                     // the file that describes how to add calendars
    GSimpleActionGroup* actions = nullptr; // with "subscribe"; outlives the group
    std::function<void()> onSubscribed;    // must not destroy the group
};

class AddCalendarsGroup {
public:
    // GTK owns the group.
    AddCalendarsGroup(AdwPreferencesGroup* group, const AddCalendarsOptions& options);
    AddCalendarsGroup(const AddCalendarsGroup&) = delete;
    AddCalendarsGroup& operator=(const AddCalendarsGroup&) = delete;

    void startSubscribing() { m_subscribe.focus(); } // leads the user to the entry

private:
    SubscribeRow m_subscribe;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
