// Owners of what GLib and GIO hand out. For this folder's own sources.
#pragma once

#include <memory>

#include <gio/gio.h>

namespace quorvel::freedesktop::session {

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object>
using ObjectHandle = std::unique_ptr<Object, ObjectUnref>;

struct SchemaUnref {
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
using SchemaHandle = std::unique_ptr<GSettingsSchema, SchemaUnref>;

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using VariantHandle = std::unique_ptr<GVariant, VariantUnref>;

} // namespace quorvel::freedesktop::session
