// A name is untrusted, so it must match a known name before anything is opened. ICU supplies the
// names, also those of Windows; the machine's zone files supply the offsets.
#include "freedesktop/dates/time_zone.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <mutex>

#include <unicode/basictz.h>
#include <unicode/strenum.h>
#include <unicode/timezone.h>

#include "base/ascii_text.h"
#include "base/civil_calendar.h"
#include "base/time_units.h"
#include "freedesktop/dates/display_zone_names.h"
#include "freedesktop/dates/system_time_zone.h"

namespace quorvel::freedesktop {
namespace {

constexpr double millisecondsPerSecond = 1000;
constexpr std::size_t longestName = 200;
constexpr std::size_t mostCachedNames = 4096;

// For machines without zone files, and for fixed offsets.
class IcuTimeZone final : public TimeZone {
public:
    IcuTimeZone(std::unique_ptr<icu::BasicTimeZone> zone, std::string identifier)
        : m_zone(std::move(zone))
        , m_identifier(std::move(identifier)) {}

    const std::string& identifier() const override { return m_identifier; }

    int offsetAt(std::int64_t instant) const override {
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t raw = 0;
        std::int32_t saving = 0;
        m_zone->getOffset(static_cast<double>(instant) * millisecondsPerSecond, 0, raw, saving,
                          status);
        return U_SUCCESS(status) ? (raw + saving) / 1000 : 0;
    }

    std::int64_t instant(const CivilTime& localTime) const override {
        const std::int64_t local = std::clamp(civilSeconds(localTime), -icalendar::farthestInstant,
                                              icalendar::farthestInstant);
        return local - offsetFromLocal(static_cast<double>(local));
    }

private:
    // In a gap the offset before it applies. Of two possible instants it is the later one.
    int offsetFromLocal(double local) const {
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t raw = 0;
        std::int32_t saving = 0;
        m_zone->getOffsetFromLocal(local * millisecondsPerSecond, UCAL_TZ_LOCAL_FORMER,
                                   UCAL_TZ_LOCAL_LATTER, raw, saving, status);
        return U_SUCCESS(status) ? (raw + saving) / 1000 : 0;
    }

    std::unique_ptr<icu::BasicTimeZone> m_zone;
    std::string m_identifier;
};

using SharedZone = std::shared_ptr<const TimeZone>;

bool mayBeInName(char c) {
    return isAsciiLetterOrDigit(c) ||
           std::string_view("_+-/.: ()").find(c) != std::string_view::npos;
}

// ICU knows these abbreviations, but they are not IANA names, and different programs mean different
// places by them (ICU takes "BST" for Dhaka and "IST" for Kolkata).
bool isAmbiguousAbbreviation(std::string_view lowerCaseName) {
    static constexpr std::array names{"act", "aet", "agt", "art", "ast", "bet", "bst", "cat", "cnt",
                                      "cst", "ctt", "eat", "ect", "iet", "ist", "jst", "mit", "net",
                                      "nst", "plt", "pnt", "prt", "pst", "sst", "vst"};
    return std::find(names.begin(), names.end(), lowerCaseName) != names.end();
}

using NameTable = std::map<std::string, std::string, std::less<>>;

// All names that ICU knows, by their lower-case form.
NameTable makeNameTable() {
    NameTable table;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::StringEnumeration> names(
        icu::TimeZone::createTimeZoneIDEnumeration(UCAL_ZONE_TYPE_ANY, nullptr, nullptr, status));
    if (U_FAILURE(status) || !names) {
        return table;
    }
    std::int32_t length = 0;
    while (const char* name = names->next(&length, status)) {
        std::string text(name, static_cast<std::size_t>(length));
        std::string key = asciiLowerCase(text);
        if (!isAmbiguousAbbreviation(key) && text != "Etc/Unknown") {
            table.emplace(std::move(key), std::move(text));
        }
    }
    return table;
}

const NameTable& nameTable() {
    static const NameTable table = makeNameTable();
    return table;
}

struct KnownName {
    std::string name;    // in ICU's spelling
    bool isExact = true; // false: the given name differs in upper and lower case
};

// Whether ICU knows the name in just this spelling. It searches its sorted names for it, where the
// table of all names takes a tenth of a short program's time.
bool isIcuSpelling(std::string_view name) {
    std::array<char, 4> region{};
    UErrorCode status = U_ZERO_ERROR;
    icu::TimeZone::getRegion(
        icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())}),
        region.data(), static_cast<std::int32_t>(region.size()), status);
    return U_SUCCESS(status);
}

std::optional<KnownName> ianaName(std::string_view name) {
    if (isIcuSpelling(name) && !isAmbiguousAbbreviation(asciiLowerCase(name))) {
        return KnownName{std::string(name), true};
    }
    const NameTable& table = nameTable();
    const auto found = table.find(asciiLowerCase(name));
    return found == table.end() ? std::nullopt
                                : std::optional(KnownName{found->second, found->second == name});
}

// ICU distinguishes upper and lower case in these names.
std::optional<KnownName> nameFromWindows(std::string_view name) {
    if (name.find('/') != std::string_view::npos) {
        return std::nullopt; // ICU would take it for a resource path
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString id;
    const icu::UnicodeString windows =
        icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())});
    icu::TimeZone::getIDForWindowsID(windows, nullptr, id, status);
    if (U_FAILURE(status) || id.isEmpty()) {
        return std::nullopt;
    }
    KnownName result;
    id.toUTF8String(result.name);
    return result;
}

// "/mozilla.org/20050126_1/Europe/Berlin": the longest known name at the end.
std::optional<KnownName> nameBehindPrefix(std::string_view name) {
    if (name.substr(0, 1) != "/" && name.find("://") == std::string_view::npos) {
        return std::nullopt;
    }
    for (std::size_t slash = name.find('/'); slash != std::string_view::npos;
         slash = name.find('/', slash + 1)) {
        const std::string_view end = trimmed(name.substr(slash + 1), " ");
        if (auto known = ianaName(end)) {
            return known;
        }
        if (auto known = nameFromWindows(end)) {
            return known;
        }
    }
    return std::nullopt;
}

std::optional<int> smallNumber(std::string_view digits) {
    if (digits.empty() || digits.size() > 2 ||
        !std::all_of(digits.begin(), digits.end(), isAsciiDigit)) {
        return std::nullopt;
    }
    int value = 0;
    for (const char c : digits) {
        value = value * 10 + (c - '0');
    }
    return value;
}

struct FixedOffset {
    bool east = true;
    int hours = 0;
    int minutes = 0;
};

// "GMT+5:30", "UTC-3", "GMT+0530"; positive east of UTC.
std::optional<FixedOffset> fixedOffset(std::string_view name) {
    const std::string head = asciiLowerCase(name.substr(0, 3));
    if ((head != "gmt" && head != "utc") || name.size() < 5 || (name[3] != '+' && name[3] != '-')) {
        return std::nullopt;
    }
    const std::string_view digits = name.substr(4);
    const std::size_t colon = digits.find(':');
    const std::size_t hourDigits =
        colon != std::string_view::npos ? colon : (digits.size() == 4 ? 2 : digits.size());
    const auto hours = smallNumber(digits.substr(0, hourDigits));
    std::optional<int> minutes = 0;
    if (hourDigits < digits.size()) {
        const std::string_view rest =
            digits.substr(hourDigits + (colon != std::string_view::npos ? 1 : 0));
        minutes = rest.size() == 2 ? smallNumber(rest) : std::nullopt;
    }
    if (!hours || !minutes || *hours > 18 || *minutes > 59) {
        return std::nullopt;
    }
    return FixedOffset{name[3] == '+', *hours, *minutes};
}

FixedOffset fixedOffset(int minutes) {
    return {minutes >= 0, std::abs(minutes) / 60, std::abs(minutes) % 60};
}

std::string nameOf(const FixedOffset& offset) {
    if (offset.hours == 0 && offset.minutes == 0) {
        return "GMT";
    }
    const auto twoDigits = [](int value) {
        return std::string{static_cast<char>('0' + value / 10),
                           static_cast<char>('0' + value % 10)};
    };
    return std::string("GMT") + (offset.east ? "+" : "-") + twoDigits(offset.hours) + ":" +
           twoDigits(offset.minutes);
}

std::optional<KnownName> knownName(std::string_view name) {
    if (const auto zone = zoneOfDisplayName(name)) {
        return KnownName{std::string(*zone), true};
    }
    if (name.size() > longestName || !std::all_of(name.begin(), name.end(), mayBeInName)) {
        return std::nullopt;
    }
    const std::string_view asked = trimmed(name, " ");
    if (asked.empty()) {
        return std::nullopt;
    }
    if (auto known = ianaName(asked)) {
        return known;
    }
    if (auto known = nameFromWindows(asked)) {
        return known;
    }
    if (const auto offset = fixedOffset(asked)) {
        return KnownName{nameOf(*offset), asked.substr(0, 3) != asciiLowerCase(asked.substr(0, 3))};
    }
    return nameBehindPrefix(asked);
}

SharedZone wrapped(icu::TimeZone* owned, std::string identifier) {
    std::unique_ptr<icu::TimeZone> zone(owned);
    auto* const basic = dynamic_cast<icu::BasicTimeZone*>(zone.get());
    if (basic == nullptr) {
        return nullptr;
    }
    static_cast<void>(zone.release());
    return std::make_shared<IcuTimeZone>(std::unique_ptr<icu::BasicTimeZone>(basic),
                                         std::move(identifier));
}

SharedZone openZone(std::string_view name) {
    auto known = knownName(name);
    if (!known) { // the zone may be newer than ICU's data
        const std::string_view asked = trimmed(name, " ");
        const bool hasRegion = asked.find('/') != std::string_view::npos;
        return hasRegion ? makeSystemTimeZone(std::string(asked)) : nullptr;
    }
    if (SharedZone zone = makeSystemTimeZone(known->name)) {
        return zone;
    }
    icu::TimeZone* const zone =
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(known->name));
    return wrapped(zone, std::move(known->name));
}

} // namespace

std::shared_ptr<const TimeZone> namedTimeZone(std::string_view name) {
    static std::mutex mutex;
    static std::map<std::string, SharedZone, std::less<>> cached;
    const std::lock_guard lock(mutex);
    if (const auto found = cached.find(name); found != cached.end()) {
        return found->second;
    }
    SharedZone zone = openZone(name);
    if (name.size() <= longestName && cached.size() < mostCachedNames) {
        cached.emplace(name, zone);
    }
    return zone;
}

std::shared_ptr<const TimeZone> timeZoneOfStatedOffset(std::string_view displayName) {
    const auto minutes = statedOffset(displayName);
    return minutes ? namedTimeZone(nameOf(fixedOffset(*minutes))) : nullptr;
}

// Cached, because each file of a calendar with one event in each names its zones.
bool isExactTimeZoneName(std::string_view name) {
    static std::mutex mutex;
    static std::map<std::string, bool, std::less<>> cached;
    {
        const std::lock_guard lock(mutex);
        if (const auto found = cached.find(name); found != cached.end()) {
            return found->second;
        }
    }
    const auto known = knownName(name);
    const bool isExact = known ? known->isExact : namedTimeZone(name) != nullptr;
    const std::lock_guard lock(mutex);
    if (name.size() <= longestName && cached.size() < mostCachedNames) {
        cached.emplace(name, isExact);
    }
    return isExact;
}

std::shared_ptr<const TimeZone> utcTimeZone() {
    return namedTimeZone("UTC");
}

// A zone without a known name is represented by its offset.
std::shared_ptr<const TimeZone> hostTimeZone() {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    if (!zone || *zone == icu::TimeZone::getUnknown()) {
        return utcTimeZone();
    }
    icu::UnicodeString id;
    std::string identifier;
    if (SharedZone known = namedTimeZone(zone->getID(id).toUTF8String(identifier))) {
        return known;
    }
    return namedTimeZone(nameOf(fixedOffset(zone->getRawOffset() / 60000)));
}

std::string timeZoneRulesVersion() {
    UErrorCode status = U_ZERO_ERROR;
    const char* const version = icu::TimeZone::getTZDataVersion(status);
    return (U_SUCCESS(status) ? version : "") + (' ' + systemTimeZoneEdition());
}

namespace {

class MachineZoneDirectory final : public icalendar::ZoneDirectory {
public:
    std::shared_ptr<const TimeZone> named(std::string_view name) const override {
        return namedTimeZone(name);
    }
    bool isExactName(std::string_view name) const override { return isExactTimeZoneName(name); }
    std::shared_ptr<const TimeZone> ofStatedOffset(std::string_view displayName) const override {
        return timeZoneOfStatedOffset(displayName);
    }
};

} // namespace

const icalendar::ZoneDirectory& zoneDirectory() {
    static const MachineZoneDirectory directory;
    return directory;
}

} // namespace quorvel::freedesktop
