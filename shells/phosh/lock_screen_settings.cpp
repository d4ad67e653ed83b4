#include "shells/phosh/lock_screen_settings.h"

#include <memory>
#include <utility>

namespace quorvel::phosh {

using freedesktop::ObjectHandle;

namespace {

constexpr const char* schemaName = "org.quorvel.shell";
constexpr const char* detailsKey = "show-details-when-locked";

struct SchemaUnref {
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};

// Opening a schema that is not installed, or an older one without the key, would end the shell.
ObjectHandle<GSettings> openSettings() {
    GSettingsSchemaSource* const source = g_settings_schema_source_get_default();
    const std::unique_ptr<GSettingsSchema, SchemaUnref> schema(
        source != nullptr ? g_settings_schema_source_lookup(source, schemaName, TRUE) : nullptr);
    if (!schema || g_settings_schema_has_key(schema.get(), detailsKey) == FALSE) {
        return nullptr;
    }
    return ObjectHandle<GSettings>(g_settings_new_full(schema.get(), nullptr, nullptr));
}

} // namespace

LockScreenSettings::LockScreenSettings()
    : m_settings(openSettings()) {}

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
