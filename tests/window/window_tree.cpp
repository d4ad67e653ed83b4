#include "tests/window/window_tree.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdint>
#include <stdexcept>
#include <vector>

namespace quorvel::window {

namespace {

constexpr long longestList = 64;
constexpr std::uint32_t allWorkspaces = 0xFFFFFFFF;

Atom atomOf(Display* display, const char* name) {
    return XInternAtom(display, name, False);
}

// The values of a property that is a list of atoms or windows.
std::vector<unsigned long> valuesOf(Display* display, Window window, const char* property,
                                    Atom type) {
    Atom actualType = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    std::vector<unsigned long> values;
    if (XGetWindowProperty(display, window, atomOf(display, property), 0, longestList, False, type,
                           &actualType, &format, &count, &rest, &data) == Success &&
        data != nullptr) {
        if (format == 32) {
            const auto* numbers = reinterpret_cast<const unsigned long*>(data);
            values.assign(numbers, numbers + count);
        }
        XFree(data);
    }
    return values;
}

std::string nameOf(Display* display, Atom atom) {
    char* name = XGetAtomName(display, atom);
    std::string text = name != nullptr ? name : "";
    XFree(name);
    return text;
}

std::string titleOf(Display* display, Window window) {
    char* name = nullptr;
    std::string title;
    if (XFetchName(display, window, &name) != 0) {
        title = name;
        XFree(name);
    }
    return title;
}

WindowFrame frameOf(Display* display, Window window) {
    XWindowAttributes attributes{};
    WindowFrame frame;
    Window child = None;
    if (XGetWindowAttributes(display, window, &attributes) != 0 &&
        XTranslateCoordinates(display, window, attributes.root, 0, 0, &frame.x, &frame.y, &child) !=
            0) {
        frame.width = attributes.width;
        frame.height = attributes.height;
    }
    return frame;
}

} // namespace

WindowTree::WindowTree(const std::string& display)
    : m_display(XOpenDisplay(display.c_str())) {
    if (m_display == nullptr) {
        throw std::runtime_error("no display " + display);
    }
}

WindowTree::~WindowTree() {
    XCloseDisplay(m_display);
}

bool WindowTree::hasWindowManager() const {
    return !valuesOf(m_display, DefaultRootWindow(m_display), "_NET_SUPPORTING_WM_CHECK", XA_WINDOW)
                .empty();
}

ManagedWindow WindowTree::managedWindow(const std::string& title) const {
    ManagedWindow found;
    for (const Window window :
         valuesOf(m_display, DefaultRootWindow(m_display), "_NET_CLIENT_LIST", XA_WINDOW)) {
        if (titleOf(m_display, window) != title) {
            continue;
        }
        found.frame = frameOf(m_display, window);
        for (const Atom state : valuesOf(m_display, window, "_NET_WM_STATE", XA_ATOM)) {
            found.states.insert(nameOf(m_display, state));
        }
        const auto types = valuesOf(m_display, window, "_NET_WM_WINDOW_TYPE", XA_ATOM);
        const auto workspaces = valuesOf(m_display, window, "_NET_WM_DESKTOP", XA_CARDINAL);
        found.isOnAllWorkspaces =
            !workspaces.empty() && static_cast<std::uint32_t>(workspaces.front()) == allWorkspaces;
        found.type = types.empty() ? "" : nameOf(m_display, types.front());
    }
    return found;
}

} // namespace quorvel::window
