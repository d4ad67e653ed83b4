#include "tests/window/virtual_display.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <unistd.h>

namespace quorvel::window {

namespace {

// A window may disappear between two requests.
int ignoreError(Display*, XErrorEvent*) {
    return 0;
}

std::optional<XWindowAttributes> visibleAttributes(Display* display, Window window) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, window, &attributes) == 0 ||
        attributes.map_state != IsViewable || attributes.width < 10 || attributes.height < 10) {
        return std::nullopt;
    }
    return attributes;
}

std::string readNumber(int descriptor) {
    std::string number;
    char c = 0;
    while (read(descriptor, &c, 1) == 1 && c != '\n') {
        number += c;
    }
    return number;
}

} // namespace

Picture Picture::band(int top, int lines) const {
    const auto start = pixels.begin() + static_cast<std::ptrdiff_t>(top) * width;
    return {width, lines, {start, start + static_cast<std::ptrdiff_t>(lines) * width}};
}

Picture Picture::part(int left, int top, int partWidth, int partHeight) const {
    Picture part{
        std::clamp(width - left, 0, partWidth), std::clamp(height - top, 0, partHeight), {}};
    for (int y = top; y < top + part.height; ++y) {
        for (int x = left; x < left + part.width; ++x) {
            part.pixels.push_back(at(x, y));
        }
    }
    return part;
}

VirtualDisplay::VirtualDisplay(const std::string& errorFile) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    // -terminate: the server ends with its last client, also where this process crashes.
    m_server = std::make_unique<ChildProcess>(
        std::vector<std::string>{XVFB, "-displayfd", "3", "-screen", "0", "1280x1024x24",
                                 "-nolisten", "tcp", "-terminate"},
        std::map<std::string, std::string>{{"PATH", "/usr/bin:/bin"}}, errorFile, ends[1]);
    close(ends[1]);
    m_name = ":" + readNumber(ends[0]);
    close(ends[0]);
    XSetErrorHandler(ignoreError);
    m_display = XOpenDisplay(m_name.c_str());
    if (m_display == nullptr) {
        throw std::runtime_error("no display " + m_name);
    }
}

VirtualDisplay::~VirtualDisplay() {
    end();
}

void VirtualDisplay::end() {
    if (m_display != nullptr) {
        XCloseDisplay(m_display);
        m_display = nullptr;
        m_server->end();
    }
}

unsigned long VirtualDisplay::window() const {
    const std::vector<unsigned long> visible = windows();
    return visible.empty() ? 0 : visible.back();
}

std::vector<unsigned long> VirtualDisplay::windows() const {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(m_display, DefaultRootWindow(m_display), &root, &parent, &children, &count) ==
        0) {
        return {};
    }
    std::vector<unsigned long> found;
    for (unsigned i = 0; i < count; ++i) {
        if (visibleAttributes(m_display, children[i])) {
            found.push_back(children[i]);
        }
    }
    XFree(children);
    return found;
}

std::optional<Picture> VirtualDisplay::picture(unsigned long window) const {
    const auto attributes = visibleAttributes(m_display, window);
    XImage* image =
        attributes ? XGetImage(m_display, window, 0, 0, static_cast<unsigned>(attributes->width),
                               static_cast<unsigned>(attributes->height), AllPlanes, ZPixmap)
                   : nullptr;
    if (image == nullptr) {
        return std::nullopt;
    }
    Picture picture{image->width, image->height, {}};
    for (int y = 0; y < image->height; ++y) {
        for (int x = 0; x < image->width; ++x) {
            picture.pixels.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)) &
                                     0xFFFFFFU);
        }
    }
    XDestroyImage(image);
    return picture;
}

} // namespace quorvel::window
