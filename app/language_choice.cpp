#include "app/language_choice.h"

#include <string_view>

#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/dates/locale_names.h"
#include "freedesktop/language/catalogs.h"

namespace quorvel::app {

std::optional<std::string> localeOfArguments(int argc, const char* const* argv) {
    constexpr std::string_view option = "--locale";
    constexpr std::string_view optionWithValue = "--locale=";
    std::optional<std::string> name;
    for (int index = 1; index < argc; ++index) {
        const std::string_view argument = argv[index];
        if (argument.starts_with(optionWithValue)) {
            name = argument.substr(optionWithValue.size());
        } else if (argument == option && index + 1 < argc) {
            name = argv[index + 1];
        }
    }
    return name ? freedesktop::canonicalLocale(*name) : std::nullopt;
}

void chooseProgramLanguage(int argc, const char* const* argv) {
    freedesktop::chooseLanguage(freedesktop::programFolders().catalogs,
                                localeOfArguments(argc, argv));
}

} // namespace quorvel::app
