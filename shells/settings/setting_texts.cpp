#include "shells/settings/setting_texts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::SettingChoice;
using freedesktop::SettingDescription;
using freedesktop::translated;

namespace {

constexpr std::array<std::pair<std::string_view, const char*>, 6> groupTitles{{
    {"look", text::groupLook},
    {"rows", text::groupRows},
    {"events", text::groupEvents},
    {"calendars", text::groupCalendars},
    {"pull", text::groupPull},
    {"icon", text::groupIcon},
}};

bool isInWord(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

void appendWord(std::string& text, std::string_view word) {
    const SettingDescription* const setting = freedesktop::settingDescription(word);
    text += setting != nullptr ? filled(translated(text::quoted), {labelOf(*setting)})
                               : std::string(word);
}

} // namespace

std::string labelOf(const SettingDescription& setting) {
    return translated(std::string(setting.label));
}

std::string meaningOf(const SettingDescription& setting) {
    return withLabelsForKeys(translated(std::string(setting.meaning)));
}

std::string labelOf(const SettingChoice& choice) {
    return translated(std::string(choice.label));
}

std::string withLabelsForKeys(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto wordEnd = std::ranges::find_if_not(text, isInWord);
        const auto length = static_cast<std::size_t>(wordEnd - text.begin());
        appendWord(result, text.substr(0, length));
        text.remove_prefix(length);
        if (!text.empty()) {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

std::string groupTitle(std::string_view group) {
    const auto* const title =
        std::ranges::find(groupTitles, group, &decltype(groupTitles)::value_type::first);
    return title != groupTitles.end() ? translated(title->second) : std::string(group);
}

} // namespace quorvel::settings_pages
