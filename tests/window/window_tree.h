// What a window manager knows of the windows on a display.
#pragma once

#include <set>
#include <string>

struct _XDisplay;

namespace quorvel::window {

struct WindowFrame {
    int x = 0; // of the content, in pixels of the screen
    int y = 0;
    int width = 0;
    int height = 0;
};

struct ManagedWindow {
    WindowFrame frame;
    std::set<std::string> states; // _NET_WM_STATE
    std::string type;             // the first of _NET_WM_WINDOW_TYPE
    bool isOnAllWorkspaces = false;
};

class WindowTree {
public:
    explicit WindowTree(const std::string& display);
    ~WindowTree();
    WindowTree(const WindowTree&) = delete;
    WindowTree& operator=(const WindowTree&) = delete;

    bool hasWindowManager() const;
    // The window with that title; without states where there is none.
    ManagedWindow managedWindow(const std::string& title) const;

private:
    struct _XDisplay* m_display;
};

} // namespace quorvel::window
