// Weak references as the data pointer of GLib's callbacks, which GLib may call after the object has
// been destroyed. Only for the folders that wrap GLib.
#pragma once

#include <memory>
#include <utility>

#include <glib.h>

namespace quorvel::freedesktop {

// Release it once, by takeWeakReference() or freeWeakReference().
template <class Object>
gpointer newWeakReference(std::weak_ptr<Object> object) {
    return new std::weak_ptr<Object>(std::move(object));
}

// Null if the object has been destroyed. For a callback that is called repeatedly.
template <class Object>
std::shared_ptr<Object> lockWeakReference(gpointer data) {
    return static_cast<std::weak_ptr<Object>*>(data)->lock();
}

template <class Object>
void freeWeakReference(gpointer data) {
    delete static_cast<std::weak_ptr<Object>*>(data);
}

// Locks and releases the reference, for a callback that is called once.
template <class Object>
std::shared_ptr<Object> takeWeakReference(gpointer data) {
    const std::unique_ptr<std::weak_ptr<Object>> reference(
        static_cast<std::weak_ptr<Object>*>(data));
    return reference->lock();
}

} // namespace quorvel::freedesktop
