#include "shells/phosh/lock_screen_settings.h"

#include <utility>

#include "shells/phosh/lock_screen_schema.h"

namespace quorvel::phosh {

LockScreenSettings::LockScreenSettings()
    : m_settings(openLockScreenSettings()) {}

LockScreenSettings::~LockScreenSettings() {
    if (m_signal != 0) {
        g_signal_handler_disconnect(m_settings.get(), m_signal);
    }
}

bool LockScreenSettings::showsDetailsWhenLocked() const {
    return !m_settings || g_settings_get_boolean(m_settings.get(), detailsKey) != FALSE;
}

void LockScreenSettings::setChangedHandler(std::function<void()> onChanged) {
    if (!m_settings) {
        return;
    }
    m_onChanged = std::move(onChanged);
    using Handler = void (*)(GSettings*, const char*, LockScreenSettings*);
    const Handler changed = [](GSettings*, const char*, LockScreenSettings* settings) {
        settings->m_onChanged();
    };
    m_signal = g_signal_connect(m_settings.get(), "changed", G_CALLBACK(changed), this);
    showsDetailsWhenLocked(); // GSettings reports changes only of values that were read
}

} // namespace quorvel::phosh
