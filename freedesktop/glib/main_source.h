// Owns a source of the thread's default main context. Only for the folders that wrap GLib.
#pragma once

#include <utility>

#include <glib.h>

namespace quorvel::freedesktop {

// Belongs to the thread that constructs it.
class MainSource {
public:
    MainSource() = default;
    // Takes ownership of the reference and attaches the source.
    MainSource(GSource* source, GSourceFunc call, gpointer data)
        : m_source(source) {
        g_source_set_callback(m_source, call, data, nullptr);
        GMainContext* const context = g_main_context_ref_thread_default();
        g_source_attach(m_source, context);
        g_main_context_unref(context);
    }
    ~MainSource() { reset(); }
    MainSource(MainSource&& other) noexcept
        : m_source(std::exchange(other.m_source, nullptr)) {}
    MainSource& operator=(MainSource&& other) noexcept {
        std::swap(m_source, other.m_source);
        return *this;
    }

    void reset() {
        if (GSource* const source = std::exchange(m_source, nullptr)) {
            g_source_destroy(source);
            g_source_unref(source);
        }
    }
    explicit operator bool() const { return m_source != nullptr; }

private:
    GSource* m_source = nullptr;
};

} // namespace quorvel::freedesktop
