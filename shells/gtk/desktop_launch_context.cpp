#include "shells/gtk/desktop_launch_context.h"

#include <gio/gdesktopappinfo.h>

namespace quorvel::gtk {

using freedesktop::ObjectHandle;
using freedesktop::TextHandle;

namespace {

// X11 broadcasts the name and icon of what starts, so a token needs an entry there.
ObjectHandle<GAppInfo> entryOrOwn(std::string_view entryName) {
    GDesktopAppInfo* entry =
        entryName.empty() ? nullptr : g_desktop_app_info_new(std::string(entryName).c_str());
    if (entry != nullptr) {
        return ObjectHandle<GAppInfo>(G_APP_INFO(entry));
    }
    return ObjectHandle<GAppInfo>(g_app_info_create_from_commandline(
        "quorvel-open", nullptr, G_APP_INFO_CREATE_NONE, nullptr));
}

} // namespace

DesktopLaunchContext::DesktopLaunchContext()
    : m_context(gdk_display_get_app_launch_context(gdk_display_get_default())) {}

std::string DesktopLaunchContext::makeToken(std::string_view entryName) {
    const ObjectHandle<GAppInfo> entry = entryOrOwn(entryName);
    if (!entry) {
        return {};
    }
    gdk_app_launch_context_set_timestamp(m_context.get(), gtk_get_current_event_time());
    const TextHandle token(g_app_launch_context_get_startup_notify_id(
        G_APP_LAUNCH_CONTEXT(m_context.get()), entry.get(), nullptr));
    return token ? token.get() : "";
}

void DesktopLaunchContext::discardToken(const std::string& token) {
    g_app_launch_context_launch_failed(G_APP_LAUNCH_CONTEXT(m_context.get()), token.c_str());
}

} // namespace quorvel::gtk
