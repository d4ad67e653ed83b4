// Owners of what GTK and GLib return. For this folder's own sources.
#pragma once

#include <utility>

#include <gtk/gtk.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::window {

using freedesktop::ObjectHandle;

// A source by its number, removed with this object. After a source has ended by itself, call
// forget().
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
