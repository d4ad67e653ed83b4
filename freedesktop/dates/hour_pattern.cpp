#include "freedesktop/dates/hour_pattern.h"

#include <initializer_list>
#include <string>

#include <unicode/ures.h>

#include "freedesktop/dates/time_patterns.h"

namespace quorvel::freedesktop {
namespace {

constexpr int mostParents = 8;

using Bundle = icu::LocalUResourceBundlePointer;

// Null: there are no such data. Those of a locale are never opened by ures_openDirect(): ICU would
// then remember wrong parents for locales that are aliases, such as zh_TW.
Bundle openSupplement() {
    UErrorCode status = U_ZERO_ERROR;
    Bundle bundle(ures_openDirect(nullptr, "supplementalData", &status));
    return U_SUCCESS(status) ? std::move(bundle) : Bundle();
}

// Null: the locale has no data of its own.
Bundle openLocale(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    Bundle bundle(ures_open(nullptr, name.c_str(), &status));
    return status == U_ZERO_ERROR ? std::move(bundle) : Bundle();
}

// The locale in whose data it is.
std::string localeOf(const Bundle& bundle) {
    UErrorCode status = U_ZERO_ERROR;
    const char* const name = ures_getLocaleByType(bundle.getAlias(), ULOC_ACTUAL_LOCALE, &status);
    return U_SUCCESS(status) ? name : "";
}

Bundle child(const Bundle& parent, const char* key) {
    UErrorCode status = U_ZERO_ERROR;
    Bundle bundle(parent.isNull() ? nullptr
                                  : ures_getByKey(parent.getAlias(), key, nullptr, &status));
    return U_SUCCESS(status) ? std::move(bundle) : Bundle();
}

icu::UnicodeString textAt(const Bundle& parent, const char* key) {
    UErrorCode status = U_ZERO_ERROR;
    return parent.isNull() ? icu::UnicodeString()
                           : icu::ures_getUnicodeStringByKey(parent.getAlias(), key, &status);
}

icu::UnicodeString firstTextAt(const Bundle& parent, const char* key) {
    const Bundle texts = child(parent, key);
    UErrorCode status = U_ZERO_ERROR;
    return texts.isNull() ? icu::UnicodeString()
                          : icu::ures_getUnicodeStringByIndex(texts.getAlias(), 0, &status);
}

std::string ascii(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

icu::Locale withRegion(icu::Locale locale) {
    UErrorCode status = U_ZERO_ERROR;
    if (*locale.getCountry() == '\0') {
        locale.addLikelySubtags(status);
    }
    return locale;
}

// ICU takes the calendar of the world for a region that is not listed.
bool isGregorian(const Bundle& supplement, const icu::Locale& locale) {
    const Bundle calendars = child(supplement, "calendarPreferenceData");
    icu::UnicodeString calendar = firstTextAt(calendars, locale.getCountry());
    if (calendar.isEmpty()) {
        calendar = firstTextAt(calendars, "001");
    }
    return calendar == u"gregorian";
}

// "h" or "H". Empty for another clock, and for a region that is not listed.
icu::UnicodeString hourField(const Bundle& supplement, const icu::Locale& locale,
                             ClockFormat clockFormat) {
    if (clockFormat != ClockFormat::ofLocale) {
        return clockFormat == ClockFormat::twelveHours ? u"h" : u"H";
    }
    const Bundle clocks = child(supplement, "timeData");
    const std::string region = locale.getCountry();
    for (const std::string& key : {locale.getLanguage() + ("_" + region), region}) {
        const icu::UnicodeString field = textAt(child(clocks, key.c_str()), "preferred");
        if (!field.isEmpty()) {
            return field == u"h" || field == u"H" ? field : icu::UnicodeString();
        }
    }
    return {};
}

// Empty for the last but the root: there the generator has patterns of its own.
std::string parentOf(const Bundle& bundle) {
    const std::string name = localeOf(bundle);
    const Bundle parent = child(bundle, "%%Parent");
    if (!parent.isNull() && localeOf(parent) == name) {
        const std::string text = ascii(textAt(bundle, "%%Parent"));
        return text == "root" ? std::string() : text;
    }
    const std::size_t end = name.rfind('_');
    return end == std::string::npos ? std::string() : name.substr(0, end);
}

icu::UnicodeString nearestPattern(std::string name, const icu::UnicodeString& field) {
    for (int i = 0; i < mostParents && !name.empty(); ++i) {
        const Bundle bundle = openLocale(name);
        if (bundle.isNull()) {
            break;
        }
        // That of a parent, if this locale has none.
        const Bundle calendars = child(bundle, "calendar");
        if (calendars.isNull() || localeOf(calendars) == "root") {
            break;
        }
        const Bundle gregorian = child(calendars, "gregorian");
        icu::UnicodeString pattern =
            textAt(child(gregorian, "availableFormats"), ascii(field).c_str());
        if (!pattern.isEmpty()) {
            return pattern;
        }
        name = parentOf(bundle);
    }
    return {};
}

// The generator replaces the fields of another clock, and other day periods than AM and PM.
bool isOfClock(const icu::UnicodeString& pattern, const icu::UnicodeString& field) {
    const bool hasMarker = pattern.indexOf(u'a') >= 0;
    const bool hasOtherPeriod = pattern.indexOf(u'b') >= 0 || pattern.indexOf(u'B') >= 0;
    return pattern.indexOf(field) >= 0 && (field == u"H" || (hasMarker && !hasOtherPeriod));
}

} // namespace

std::optional<icu::UnicodeString> hourPattern(const icu::Locale& locale, ClockFormat clockFormat) {
    const icu::Locale plain(locale.getBaseName());
    if (withClockFormat(plain, clockFormat) != locale) {
        return std::nullopt;
    }
    const Bundle supplement = openSupplement();
    const icu::Locale regional = withRegion(plain);
    const icu::UnicodeString field = hourField(supplement, regional, clockFormat);
    if (field.isEmpty() || !isGregorian(supplement, regional)) {
        return std::nullopt;
    }
    icu::UnicodeString pattern = nearestPattern(plain.getName(), field);
    return isOfClock(pattern, field) ? std::optional(std::move(pattern)) : std::nullopt;
}

} // namespace quorvel::freedesktop
