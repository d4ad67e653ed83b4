// The activation tokens of GTK, which let opened applications come to the front.
#pragma once

#include "freedesktop/glib/handles.h"
#include "freedesktop/launch/launch_context.h"

#include <gtk/gtk.h>

namespace quorvel::gtk {

// Makes tokens for the input event that GTK is handling, or else for the latest one.
class DesktopLaunchContext final : public freedesktop::LaunchContext {
public:
    DesktopLaunchContext(); // call startToolkit() before
    std::string makeToken(std::string_view entryName) override;
    void discardToken(const std::string& token) override;

private:
    freedesktop::ObjectHandle<GdkAppLaunchContext> m_context;
};

} // namespace quorvel::gtk
