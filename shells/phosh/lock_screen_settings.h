// The plugin's own settings, of the schema org.quorvel.shell.
#pragma once

#include <functional>

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::phosh {

// Where the schema is not installed, the settings have their defaults.
class LockScreenSettings {
public:
    // Belongs to the thread that constructs it.
    LockScreenSettings();
    ~LockScreenSettings(); // the handler is not called afterwards
    LockScreenSettings(const LockScreenSettings&) = delete;
    LockScreenSettings& operator=(const LockScreenSettings&) = delete;

    // Whether titles and locations are shown while the session is locked; by default they are.
    bool showsDetailsWhenLocked() const;
    // Once. Called on the default main context of that thread when a setting has changed.
    void setChangedHandler(std::function<void()> onChanged);

private:
    freedesktop::ObjectHandle<GSettings> m_settings; // null: there is no schema
    std::function<void()> m_onChanged;
    gulong m_signal = 0;
};

} // namespace quorvel::phosh
