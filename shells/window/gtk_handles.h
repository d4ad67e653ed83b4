// Owners of what GTK and GLib hand out. For this folder's own sources.
#pragma once

#include <memory>
#include <utility>

#include <gtk/gtk.h>

namespace quorvel::window {

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object>
using ObjectHandle = std::unique_ptr<Object, ObjectUnref>;

// Removed with this object, unless it has ended by itself: then forget() is to be called.
class SourceHandle {
public:
    SourceHandle() = default;
    explicit SourceHandle(guint source)
        : m_source(source) {}
    ~SourceHandle() { reset(); }
    SourceHandle(const SourceHandle&) = delete;
    SourceHandle& operator=(const SourceHandle&) = delete;

    void reset(guint source = 0) {
        if (const guint old = std::exchange(m_source, source); old != 0) {
            g_source_remove(old);
        }
    }
    void forget() { m_source = 0; }
    explicit operator bool() const { return m_source != 0; }

private:
    guint m_source = 0;
};

} // namespace quorvel::window
