#include "freedesktop/dates/locale_names.h"

#include <algorithm>
#include <set>

#include <unicode/locid.h>
#include <unicode/uenum.h>
#include <unicode/uloc.h>
#include <unicode/ures.h>

#include "base/ascii_text.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t longestName = 128;
constexpr const char* posixLocale = "en_US_POSIX";

using Names = std::set<std::string, std::less<>>;

struct KnownNames {
    Names languages;
    Names regions;
};

KnownNames collectKnownNames() {
    KnownNames known;
    for (const char* const* region = uloc_getISOCountries(); *region != nullptr; ++region) {
        known.regions.insert(*region);
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUEnumerationPointer locales(
        uloc_openAvailableByType(ULOC_AVAILABLE_WITH_LEGACY_ALIASES, &status));
    while (const char* name = uenum_next(locales.getAlias(), nullptr, &status)) {
        const icu::Locale locale(name);
        known.languages.insert(locale.getLanguage());
        known.regions.insert(locale.getCountry());
    }
    return known;
}

const KnownNames& knownNames() {
    static const KnownNames known = collectKnownNames();
    return known;
}

bool mayBeInLocale(char c) {
    return isAsciiLetterOrDigit(c) || std::string_view("_-.@=;+").find(c) != std::string_view::npos;
}

// The script of a POSIX modifier. Empty for modifiers such as currencies, which do not concern
// dates.
std::string_view subtagOfModifier(std::string_view modifier) {
    if (modifier == "latin" || modifier == "Latn") {
        return "Latn";
    }
    if (modifier == "cyrillic" || modifier == "Cyrl") {
        return "Cyrl";
    }
    if (modifier == "devanagari") {
        return "Deva";
    }
    return {};
}

icu::Locale fromPosix(std::string_view name) {
    const std::size_t at = name.find('@');
    const std::string_view modifier =
        at == std::string_view::npos ? std::string_view() : name.substr(at + 1);
    const std::string_view plain = name.substr(0, std::min(name.find('.'), at));
    std::string identifier(plain.substr(0, plain.find_last_not_of('_') + 1));
    if (modifier.find('=') != std::string_view::npos) {
        identifier.append("@").append(modifier);
    } else if (const std::string_view script = subtagOfModifier(modifier); !script.empty()) {
        const std::size_t afterLanguage = std::min(plain.find('_'), plain.size());
        identifier.insert(afterLanguage, "_" + std::string(script));
    } else if (modifier == "valencia") {
        identifier.append("_VALENCIA");
    }
    return icu::Locale::createFromName(identifier.c_str());
}

// For a language tag of RFC 5646. ICU parses only up to the first invalid part.
std::optional<icu::Locale> fromLanguageTag(std::string_view name) {
    const std::string tag(name);
    std::string identifier(longestName * 4, '\0');
    std::int32_t parsed = 0;
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length =
        uloc_forLanguageTag(tag.c_str(), identifier.data(),
                            static_cast<std::int32_t>(identifier.size()), &parsed, &status);
    if (U_FAILURE(status) || parsed != static_cast<std::int32_t>(tag.size())) {
        return std::nullopt;
    }
    identifier.resize(static_cast<std::size_t>(length));
    return icu::Locale(identifier.c_str());
}

// ICU names the files with a language's data after the language. Its other files have longer names.
bool hasLanguageFile(const std::string& language) {
    constexpr std::size_t longestLanguage = 3;
    if (language.empty() || language.size() > longestLanguage) {
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUResourceBundlePointer file(ures_open(nullptr, language.c_str(), &status));
    return status == U_ZERO_ERROR; // ICU warns if it has opened another language's file
}

bool isIsoCountry(std::string_view region) {
    for (const char* const* country = uloc_getISOCountries(); *country != nullptr; ++country) {
        if (region == *country) {
            return true;
        }
    }
    return false;
}

// The usual locales, without the list of all, which takes a fifth of a short program's time.
bool isUsual(const icu::Locale& locale) {
    const std::string_view region = locale.getCountry();
    return hasLanguageFile(locale.getLanguage()) && (region.empty() || isIsoCountry(region));
}

bool isKnown(const icu::Locale& locale) {
    if (!locale.isBogus() && isUsual(locale)) {
        return true;
    }
    const KnownNames& known = knownNames();
    const std::string_view region = locale.getCountry();
    return !locale.isBogus() && known.languages.count(std::string_view(locale.getLanguage())) > 0 &&
           *locale.getLanguage() != '\0' && (region.empty() || known.regions.count(region) > 0);
}

} // namespace

std::optional<std::string> canonicalLocale(std::string_view name) {
    if (name.empty() || name.size() > longestName ||
        !std::all_of(name.begin(), name.end(), mayBeInLocale)) {
        return std::nullopt;
    }
    const std::string_view withoutCodeset = name.substr(0, name.find_first_of(".@"));
    if (withoutCodeset == "C" || withoutCodeset == "POSIX") {
        return posixLocale;
    }
    const bool isTag = name.find('-') != std::string_view::npos &&
                       name.find_first_of("_.@") == std::string_view::npos;
    const std::optional<icu::Locale> locale = isTag ? fromLanguageTag(name) : fromPosix(name);
    if (!locale || !isKnown(*locale)) {
        return std::nullopt;
    }
    return locale->getName();
}

std::string defaultLocale(std::string_view lcAll, std::string_view lcTime, std::string_view lang) {
    for (const std::string_view name : {lcAll, lcTime, lang}) {
        if (auto locale = canonicalLocale(name)) {
            return *locale;
        }
    }
    return posixLocale;
}

bool isWrittenRightToLeft(const std::string& locale) {
    return uloc_isRightToLeft(locale.c_str()) != 0;
}

} // namespace quorvel::freedesktop
