// Weak references as the data pointer of GLib's callbacks, which may come after the object that
// asked for them has been destroyed. For the folders that wrap GLib.
#pragma once

#include <memory>
#include <utility>

#include <glib.h>

namespace quorvel::freedesktop {

// To be released by takeWeakReference() or freeWeakReference(), once.
template <class Object>
gpointer newWeakReference(std::weak_ptr<Object> object) {
    return new std::weak_ptr<Object>(std::move(object));
}

// Null once the object is gone. For a callback that comes more than once.
template <class Object>
std::shared_ptr<Object> lockWeakReference(gpointer data) {
    return static_cast<std::weak_ptr<Object>*>(data)->lock();
}

template <class Object>
void freeWeakReference(gpointer data) {
    delete static_cast<std::weak_ptr<Object>*>(data);
}

// Both at once, for a callback that comes once.
template <class Object>
std::shared_ptr<Object> takeWeakReference(gpointer data) {
    const std::unique_ptr<std::weak_ptr<Object>> reference(
        static_cast<std::weak_ptr<Object>*>(data));
    return reference->lock();
}

} // namespace quorvel::freedesktop
