#include "shells/settings/application_list.h"

#include <algorithm>
#include <string_view>

#include <gio/gdesktopappinfo.h>

#include "freedesktop/launch/openable_link.h"

namespace quorvel::settings_pages {

using freedesktop::ObjectHandle;
using freedesktop::TextHandle;

namespace {

std::string withoutSuffix(std::string_view name) {
    constexpr std::string_view suffix = ".desktop";
    return std::string(name.ends_with(suffix) ? name.substr(0, name.size() - suffix.size()) : name);
}

ListedApplication describe(GAppInfo* info) {
    const char* const identifier = g_app_info_get_id(info);
    GIcon* const icon = g_app_info_get_icon(info);
    return {withoutSuffix(identifier != nullptr ? identifier : ""),
            g_app_info_get_display_name(info),
            icon != nullptr ? freedesktop::share(icon) : nullptr};
}

std::string folded(const std::string& text) {
    const TextHandle folded(g_utf8_casefold(text.c_str(), -1));
    return folded.get();
}

} // namespace

std::vector<ListedApplication> installedApplications() {
    std::vector<ListedApplication> applications;
    const freedesktop::ObjectListHandle<GList> infos(g_app_info_get_all());
    for (const GList* entry = infos.get(); entry != nullptr; entry = entry->next) {
        if (g_app_info_should_show(G_APP_INFO(entry->data)) != FALSE) {
            applications.push_back(describe(G_APP_INFO(entry->data)));
        }
    }
    std::ranges::sort(applications, [](const auto& a, const auto& b) {
        const std::string nameOfA = folded(a.name);
        const std::string nameOfB = folded(b.name);
        return nameOfA != nameOfB ? nameOfA < nameOfB : a.identifier < b.identifier;
    });
    return applications;
}

std::optional<ListedApplication> installedApplication(const std::string& identifier) {
    const auto name = freedesktop::desktopEntryName(identifier);
    const ObjectHandle<GDesktopAppInfo> info(name ? g_desktop_app_info_new(name->c_str())
                                                  : nullptr);
    return info ? std::optional(describe(G_APP_INFO(info.get()))) : std::nullopt;
}

bool matches(const ListedApplication& application, const std::string& text) {
    const std::string wanted = folded(text);
    return folded(application.name).find(wanted) != std::string::npos ||
           folded(application.identifier).find(wanted) != std::string::npos;
}

} // namespace quorvel::settings_pages
