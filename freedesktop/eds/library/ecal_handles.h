// Owners of what the calendar server's libraries hand out. For this folder alone.
#pragma once

#include <memory>
#include <string>

#include <libecal/libecal.h>

namespace quorvel::freedesktop::eds {

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object>
using ObjectHandle = std::unique_ptr<Object, ObjectUnref>;

template <class Object>
ObjectHandle<Object> keep(Object* object) {
    return ObjectHandle<Object>(static_cast<Object*>(g_object_ref(object)));
}

struct ErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorHandle = std::unique_ptr<GError, ErrorFree>;

struct TextFree {
    void operator()(char* text) const { g_free(text); }
};
using TextHandle = std::unique_ptr<char, TextFree>;

struct ObjectListFree {
    void operator()(GSList* list) const { g_slist_free_full(list, g_object_unref); }
};
using ObjectListHandle = std::unique_ptr<GSList, ObjectListFree>;

inline std::string messageOf(const ErrorHandle& error) {
    return error && error->message != nullptr ? error->message : "nobody says why";
}

} // namespace quorvel::freedesktop::eds
