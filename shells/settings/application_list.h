// The applications that are installed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::settings_pages {

struct ListedApplication {
    std::string identifier; // of its desktop entry, without ".desktop"
    std::string name;
    freedesktop::ObjectHandle<GIcon> icon; // null: it has none
};

// Those that menus show, sorted by name.
std::vector<ListedApplication> installedApplications();

// Absent: no application with that identifier is installed.
std::optional<ListedApplication> installedApplication(const std::string& identifier);

// Whether the name or the identifier contains the text, in upper or lower case.
bool matches(const ListedApplication& application, const std::string& text);

} // namespace quorvel::settings_pages
