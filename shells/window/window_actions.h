// The named actions of a menu: functions that a menu item or a key runs.
#pragma once

#include <exception>
#include <functional>
#include <map>
#include <string>

#include <gtk/gtk.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::window {

class WindowActions {
public:
    // The actions of the widget and of everything below it have names that begin with `prefix` and
    // a full stop. `onFailure` receives exceptions of the actions, as none may leave a function
    // that GTK calls.
    WindowActions(GtkWidget* widget, const char* prefix,
                  std::function<void(std::exception_ptr)> onFailure);
    ~WindowActions(); // the functions are not called afterwards
    WindowActions(const WindowActions&) = delete;
    WindowActions& operator=(const WindowActions&) = delete;

    void add(const char* name, std::function<void()> function);
    void setEnabled(const char* name, bool isEnabled); // the action exists

private:
    struct Action {
        const WindowActions* owner;
        std::function<void()> function;
    };

    void run(const std::function<void()>& function) const noexcept;

    freedesktop::ObjectHandle<GSimpleActionGroup> m_group;
    std::function<void(std::exception_ptr)> m_onFailure;
    std::map<std::string, Action> m_actions; // GTK has pointers to its elements
};

} // namespace quorvel::window
