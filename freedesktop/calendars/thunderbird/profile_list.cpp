#include "freedesktop/calendars/thunderbird/profile_list.h"

#include <algorithm>

#include "base/ascii_text.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::size_t mostProfiles = 20;

struct Section {
    std::string_view name;
    std::string_view path;
    std::string_view defaultValue;
    bool isRelative = true;
};

void readEntry(std::string_view key, std::string_view value, Section& section) {
    if (key == "Path") {
        section.path = value;
    } else if (key == "Default") {
        section.defaultValue = value;
    } else if (key == "IsRelative") {
        section.isRelative = value != "0";
    }
}

std::vector<Section> sectionsOf(std::string_view list) {
    std::vector<Section> sections;
    while (!list.empty()) {
        const std::size_t end = list.find('\n');
        const std::string_view line = trimmed(list.substr(0, end), blanks);
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
        const std::size_t equalSign = line.find('=');
        if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
            sections.push_back({line.substr(1, line.size() - 2), {}, {}, true});
        } else if (equalSign != std::string_view::npos && !sections.empty()) {
            readEntry(line.substr(0, equalSign), line.substr(equalSign + 1), sections.back());
        }
    }
    return sections;
}

std::string folderAt(std::string_view path, const std::string& folder) {
    return path.starts_with('/') ? std::string(path) : folder + "/" + std::string(path);
}

} // namespace

std::vector<std::string> usedProfiles(std::string_view list, const std::string& folder) {
    std::vector<std::string> installed;
    std::vector<std::string> chosen;
    std::vector<std::string> others;
    for (const Section& section : sectionsOf(list)) {
        if (section.name.starts_with("Install") && !section.defaultValue.empty()) {
            installed.push_back(folderAt(section.defaultValue, folder));
        } else if (section.name.starts_with("Profile") && !section.path.empty()) {
            (section.defaultValue == "1" ? chosen : others)
                .push_back(section.isRelative ? folderAt(section.path, folder)
                                              : std::string(section.path));
        }
    }
    if (installed.empty()) {
        auto& rest = chosen.empty() ? others : chosen;
        installed.assign(rest.begin(), rest.begin() + (rest.empty() ? 0 : 1));
    }
    std::vector<std::string> used;
    for (std::string& profile : installed) {
        if (std::ranges::find(used, profile) == used.end() && used.size() < mostProfiles) {
            used.push_back(std::move(profile));
        }
    }
    return used;
}

} // namespace quorvel::freedesktop::thunderbird
