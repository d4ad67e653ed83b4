// One window for each session bus: a second program asks the first to present its window.
#pragma once

#include <cstdint>
#include <functional>

#include <gtk/gtk.h>

#include "freedesktop/glib/handles.h"
#include "shells/window/instance_role.h"

namespace quorvel::window {

class SingleInstance {
public:
    // Waits a few seconds for the bus at most. `options` stands for what the window shows; two
    // processes compare it. Call startToolkit() before.
    explicit SingleInstance(std::uint64_t options);
    // Gives the name up, so that the next process is the first.
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    InstanceRole role() const { return m_role; }
    // The window that belongs to the process, and what another process has asked for: to present
    // it. Null: nothing. `onActivate` throws nothing.
    void setWindow(GtkWindow* window, std::function<void()> onActivate);

private:
    void joinBus(std::uint64_t options);

    freedesktop::ObjectHandle<GtkApplication> m_application; // null without a bus
    InstanceRole m_role = InstanceRole::first;
    std::function<void()> m_onActivate; // null: none
};

} // namespace quorvel::window
