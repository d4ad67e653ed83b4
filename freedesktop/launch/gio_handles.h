// Handles of the library that opens links and starts applications. For this folder alone.
#pragma once

#include <memory>

#include <gio/gio.h>

namespace quorvel::freedesktop::launch {

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object>
using ObjectHandle = std::unique_ptr<Object, ObjectUnref>;

struct ErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorHandle = std::unique_ptr<GError, ErrorFree>;

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using VariantHandle = std::unique_ptr<GVariant, VariantUnref>;

struct BytesFree {
    void operator()(gpointer bytes) const { g_free(bytes); }
};
using TextHandle = std::unique_ptr<char, BytesFree>;

struct TextsFree {
    void operator()(char** texts) const { g_strfreev(texts); }
};
using TextsHandle = std::unique_ptr<char*, TextsFree>; // ends with a null

struct SourceDestroy {
    void operator()(GSource* source) const {
        g_source_destroy(source);
        g_source_unref(source);
    }
};
using SourceHandle = std::unique_ptr<GSource, SourceDestroy>;

} // namespace quorvel::freedesktop::launch
