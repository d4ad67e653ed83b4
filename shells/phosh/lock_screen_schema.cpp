#include "shells/phosh/lock_screen_schema.h"

#include <memory>

namespace quorvel::phosh {

namespace {

constexpr const char* schemaName = "org.quorvel.shell";

struct SchemaUnref {
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};

} // namespace

freedesktop::ObjectHandle<GSettings> openLockScreenSettings() {
    GSettingsSchemaSource* const source = g_settings_schema_source_get_default();
    const std::unique_ptr<GSettingsSchema, SchemaUnref> schema(
        source != nullptr ? g_settings_schema_source_lookup(source, schemaName, TRUE) : nullptr);
    if (!schema || g_settings_schema_has_key(schema.get(), detailsKey) == FALSE) {
        return nullptr;
    }
    return freedesktop::ObjectHandle<GSettings>(
        g_settings_new_full(schema.get(), nullptr, nullptr));
}

} // namespace quorvel::phosh
