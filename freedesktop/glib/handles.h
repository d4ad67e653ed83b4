// Owning pointers to objects of GLib, GObject and the libraries above them. Only for the folders
// that wrap one of these libraries.
#pragma once

#include <memory>
#include <string>

#include <glib-object.h>

namespace quorvel::freedesktop {

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object>
using ObjectHandle = std::unique_ptr<Object, ObjectUnref>;

// A further reference to an object.
template <class Object>
ObjectHandle<Object> share(Object* object) {
    return ObjectHandle<Object>(static_cast<Object*>(g_object_ref(object)));
}

// A list that owns its objects.
struct ObjectListFree {
    void operator()(GList* list) const { g_list_free_full(list, g_object_unref); }
    void operator()(GSList* list) const { g_slist_free_full(list, g_object_unref); }
};
template <class List>
using ObjectListHandle = std::unique_ptr<List, ObjectListFree>; // of GList or GSList

struct ErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorHandle = std::unique_ptr<GError, ErrorFree>;

inline std::string messageOf(const ErrorHandle& error) {
    return error && error->message != nullptr ? error->message : "no reason was given";
}

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using VariantHandle = std::unique_ptr<GVariant, VariantUnref>;

struct TextFree {
    void operator()(char* text) const { g_free(text); }
};
using TextHandle = std::unique_ptr<char, TextFree>;

struct TextsFree {
    void operator()(char** texts) const { g_strfreev(texts); }
};
using TextsHandle = std::unique_ptr<char*, TextsFree>; // null-terminated

struct UriUnref {
    void operator()(GUri* uri) const { g_uri_unref(uri); }
};
using UriHandle = std::unique_ptr<GUri, UriUnref>;

// Also removes the source from its main context, so that it calls no more.
struct SourceDestroy {
    void operator()(GSource* source) const {
        g_source_destroy(source);
        g_source_unref(source);
    }
};
using SourceHandle = std::unique_ptr<GSource, SourceDestroy>;

} // namespace quorvel::freedesktop
