#include "freedesktop/language/catalogs.h"

#include <clocale>
#include <cstdlib>
#include <string_view>

#include <langinfo.h>
#include <libintl.h>

namespace quorvel::freedesktop {

namespace {

constexpr const char* languageVariable = "LANGUAGE";

struct ReplacedLanguage {
    std::optional<std::string> users;
    std::optional<std::string> ours; // absent: nothing is replaced
};

ReplacedLanguage& replacedLanguage() {
    static ReplacedLanguage language;
    return language;
}

std::optional<std::string> languageOfEnvironment() {
    const char* const value = std::getenv(languageVariable);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

// gettext translates nothing in these.
bool isEnglishOnly(std::string_view locale) {
    return locale == "C" || locale == "POSIX" || locale.starts_with("C.");
}

// "zh_Hans_CN@calendar=roc" -> "zh_CN", "sr_Latn_RS" -> "sr_RS@latin", "en_US_POSIX" -> "en_US".
std::string systemName(std::string_view locale) {
    locale = locale.substr(0, locale.find('@'));
    std::string name;
    std::string modifier;
    while (!locale.empty()) {
        const std::string_view part = locale.substr(0, locale.find('_'));
        locale.remove_prefix(part.size() == locale.size() ? part.size() : part.size() + 1);
        if (part == "Latn") {
            modifier = "@latin";
        } else if (name.empty()) {
            name = part;
        } else if (part.size() == 2 || part.size() == 3) { // a region
            name.append("_").append(part);
        }
    }
    return name + modifier;
}

bool carriesMessages(const std::string& locale) {
    const char* const chosen = std::setlocale(LC_MESSAGES, locale.c_str());
    return chosen != nullptr && !isEnglishOnly(chosen);
}

// gettext takes LANGUAGE into account only in a locale of the system that is not "C"; which one
// does not matter.
void chooseCarrier(const std::string& name) {
    const std::size_t at = name.find('@');
    const std::string withCodeset =
        name.substr(0, at) + ".UTF-8" + (at == std::string::npos ? "" : name.substr(at));
    for (const std::string& candidate : {withCodeset, name, std::string(),
                                         std::string("en_US.UTF-8"), std::string("en_GB.UTF-8")}) {
        if (carriesMessages(candidate)) {
            return;
        }
    }
    std::setlocale(LC_MESSAGES, "C.UTF-8"); // carries LANGUAGE in some versions of the system
}

bool hasUtf8Characters(const std::string& locale) {
    return std::setlocale(LC_CTYPE, locale.c_str()) != nullptr &&
           std::string_view(nl_langinfo(CODESET)) == "UTF-8";
}

// The system's messages are in the encoding of LC_CTYPE, from which libraries convert them. Where
// there is no UTF-8, ASCII remains for both.
void chooseCharacters() {
    const char* const messages = std::setlocale(LC_MESSAGES, nullptr);
    for (const std::string& locale :
         {std::string("C.UTF-8"), std::string(messages), std::string()}) {
        if (hasUtf8Characters(locale)) {
            return;
        }
    }
    std::setlocale(LC_CTYPE, "C");
}

void replaceLanguageVariable(const std::string& language) {
    replacedLanguage() = {usersLanguageVariable(), language};
    setenv(languageVariable, language.c_str(), 1);
}

} // namespace

void useCatalogs(const std::string& folder) {
    bindtextdomain(messageDomain, folder.c_str());
    bind_textdomain_codeset(messageDomain, "UTF-8");
}

void chooseLanguage(const std::string& folder, const std::optional<std::string>& locale) {
    useCatalogs(folder);
    textdomain(messageDomain); // libraries translate their texts only where there are ours
    if (!locale) {
        std::setlocale(LC_MESSAGES, "");
    } else {
        const std::string name = systemName(*locale);
        replaceLanguageVariable(name);
        chooseCarrier(name);
    }
    chooseCharacters();
}

std::optional<std::string> usersLanguageVariable() {
    const std::optional<std::string> language = languageOfEnvironment();
    const bool isOurs = language && language == replacedLanguage().ours;
    return isOurs ? replacedLanguage().users : language;
}

void restoreUsersLanguageVariable() {
    if (const std::optional<std::string> language = usersLanguageVariable()) {
        setenv(languageVariable, language->c_str(), 1);
    } else {
        unsetenv(languageVariable);
    }
}

} // namespace quorvel::freedesktop
