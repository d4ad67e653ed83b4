// Compares lists of places place by place, because they differ between versions and languages of
// Windows; one known place identifies the zone. The offsets may be an hour off, because countries
// have changed theirs.
#include "freedesktop/dates/display_zone_names.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>

#include "base/ascii_text.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t longestName = 200;
constexpr std::size_t mostPlaces = 12;
constexpr int tolerance = 60; // minutes

using Places = std::vector<std::string>;

bool consume(std::string_view& text, std::string_view head) {
    if (!text.starts_with(head)) {
        return false;
    }
    text.remove_prefix(head.size());
    return true;
}

void skipSpaces(std::string_view& text) {
    while (consume(text, " ")) {
    }
}

// One or two digits.
std::optional<int> consumeNumber(std::string_view& text) {
    int value = 0;
    std::size_t digits = 0;
    while (digits < 2 && digits < text.size() && isAsciiDigit(text[digits])) {
        value = value * 10 + (text[digits++] - '0');
    }
    text.remove_prefix(digits);
    return digits == 0 ? std::nullopt : std::optional(value);
}

std::optional<int> consumeHoursAndMinutes(std::string_view& text) {
    const auto hours = consumeNumber(text);
    std::optional<int> minutes = 0;
    if (consume(text, ":") || consume(text, ".") || (!text.empty() && isAsciiDigit(text.front()))) {
        minutes = consumeNumber(text);
    }
    if (!hours || !minutes || *hours > 14 || *minutes > 59) {
        return std::nullopt;
    }
    return *hours * 60 + *minutes;
}

// Consumes the offset before the places. The text is in lower case.
std::optional<int> consumeOffset(std::string_view& text) {
    skipSpaces(text);
    if (!consume(text, "(")) {
        return std::nullopt;
    }
    skipSpaces(text);
    if (!consume(text, "utc") && !consume(text, "gmt")) {
        return std::nullopt;
    }
    skipSpaces(text);
    if (consume(text, ")")) {
        return 0;
    }
    constexpr std::string_view minusSign = "\xE2\x88\x92";
    const bool isWest = consume(text, "-") || consume(text, minusSign);
    if (!isWest && !consume(text, "+")) {
        return std::nullopt;
    }
    skipSpaces(text);
    const auto minutes = consumeHoursAndMinutes(text);
    skipSpaces(text);
    if (!minutes || !consume(text, ")")) {
        return std::nullopt;
    }
    return isWest ? -*minutes : *minutes;
}

// Without the parts that distinguish editions and countries: "Eastern Time (US & Canada)", "Moscow
// (RTZ 2)", "Monterrey - Old".
std::string_view plainPlace(std::string_view place) {
    place = place.substr(0, place.find('('));
    for (const std::string_view edition : {" - old", " - new"}) {
        place = place.substr(0, place.find(edition));
    }
    return trimmed(place, " .\\\"");
}

Places placesOf(std::string_view text) {
    Places places;
    while (!text.empty() && places.size() < mostPlaces) {
        const std::size_t end = text.find_first_of(",;/:");
        const std::string_view place = plainPlace(text.substr(0, end));
        if (!place.empty()) {
            places.emplace_back(place);
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return places;
}

std::string joined(const Places& places) {
    std::string result;
    for (const std::string& place : places) {
        result += (result.empty() ? "" : ",") + place;
    }
    return result;
}

using PlaceTable = std::multimap<std::string, const DisplayedZone*, std::less<>>;

PlaceTable makePlaceTable() {
    PlaceTable table;
    for (const DisplayedZone& zone : displayedZones()) {
        std::string_view rest = zone.places;
        while (!rest.empty()) {
            const std::size_t end = rest.find('|');
            table.emplace(joined(placesOf(asciiLowerCase(rest.substr(0, end)))), &zone);
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
    }
    return table;
}

const DisplayedZone* findPlace(std::string_view place, int minutes, int farthest) {
    static const PlaceTable table = makePlaceTable();
    const auto [first, last] = table.equal_range(place);
    const auto found = std::find_if(first, last, [&](const auto& entry) {
        return std::abs(entry.second->minutes - minutes) <= farthest;
    });
    return found == last ? nullptr : found->second;
}

// A list that is known as a whole takes precedence, because its places may be in different zones
// now.
const DisplayedZone* findZone(const Places& places, int minutes) {
    if (const DisplayedZone* const zone = findPlace(joined(places), minutes, tolerance)) {
        return zone;
    }
    for (const int farthest : {0, tolerance}) {
        for (const std::string& place : places) {
            if (const DisplayedZone* const zone = findPlace(place, minutes, farthest)) {
                return zone;
            }
        }
    }
    return nullptr;
}

} // namespace

std::optional<int> statedOffset(std::string_view displayName) {
    const std::string text = asciiLowerCase(displayName.substr(0, longestName));
    std::string_view rest = text;
    return consumeOffset(rest);
}

std::optional<std::string_view> zoneOfDisplayName(std::string_view displayName) {
    if (displayName.size() > longestName) {
        return std::nullopt;
    }
    const std::string text = asciiLowerCase(displayName);
    std::string_view rest = text;
    const auto minutes = consumeOffset(rest);
    if (!minutes) {
        return std::nullopt;
    }
    const DisplayedZone* const zone = findZone(placesOf(rest), *minutes);
    return zone == nullptr ? std::nullopt : std::optional(zone->zone);
}

// From west to east. An entry with a comma is a list whose first place is in another zone now.
const std::vector<DisplayedZone>& displayedZones() {
    static const std::vector<DisplayedZone> zones{
        {-720, "International Date Line West|Eniwetok|Kwajalein", "Etc/GMT+12"},
        {-660, "Coordinated Universal Time-11", "Etc/GMT+11"},
        {-660, "Midway Island|Samoa", "Pacific/Pago_Pago"},
        {-600, "Aleutian Islands", "America/Adak"},
        {-600, "Hawaii", "Pacific/Honolulu"},
        {-570, "Marquesas Islands", "Pacific/Marquesas"},
        {-540, "Alaska", "America/Anchorage"},
        {-540, "Coordinated Universal Time-09", "Etc/GMT+9"},
        {-480, "Baja California|Tijuana", "America/Tijuana"},
        {-480, "Coordinated Universal Time-08", "Etc/GMT+8"},
        {-480, "Pacific Time", "America/Los_Angeles"},
        {-420, "Arizona", "America/Phoenix"},
        {-420, "La Paz|Mazatlan", "America/Mazatlan"},
        {-420, "Mountain Time", "America/Denver"},
        {-420, "Yukon", "America/Whitehorse"},
        {-360, "Central America", "America/Guatemala"},
        {-360, "Central Time", "America/Chicago"},
        {-360, "Easter Island", "Pacific/Easter"},
        {-360, "Guadalajara|Mexico City|Monterrey", "America/Mexico_City"},
        {-360, "Chihuahua", "America/Chihuahua"},
        {-360, "Saskatchewan", "America/Regina"},
        {-300, "Bogota|Lima|Quito", "America/Bogota"},
        {-300, "Rio Branco", "America/Rio_Branco"},
        {-300, "Chetumal", "America/Cancun"},
        {-300, "Eastern Time", "America/New_York"},
        {-300, "Haiti", "America/Port-au-Prince"},
        {-300, "Havana", "America/Havana"},
        {-300, "Indiana", "America/Indiana/Indianapolis"},
        {-300, "Turks and Caicos", "America/Grand_Turk"},
        {-240, "Asuncion", "America/Asuncion"},
        {-240, "Atlantic Time", "America/Halifax"},
        {-240, "Caracas", "America/Caracas"},
        {-240, "Cuiaba", "America/Cuiaba"},
        {-240, "Georgetown|La Paz|Manaus|San Juan|Caracas, La Paz", "America/La_Paz"},
        {-240, "Santiago", "America/Santiago"},
        {-210, "Newfoundland|Newfoundland and Labrador", "America/St_Johns"},
        {-180, "Araguaina", "America/Araguaina"},
        {-180, "Brasilia", "America/Sao_Paulo"},
        {-180, "Cayenne", "America/Cayenne"},
        {-180, "Fortaleza", "America/Fortaleza"},
        {-180, "City of Buenos Aires|Buenos Aires", "America/Argentina/Buenos_Aires"},
        {-180, "Montevideo", "America/Montevideo"},
        {-180, "Punta Arenas", "America/Punta_Arenas"},
        {-180, "Saint Pierre and Miquelon", "America/Miquelon"},
        {-180, "Salvador", "America/Bahia"},
        {-120, "Coordinated Universal Time-02", "Etc/GMT+2"},
        {-120, "Greenland", "America/Nuuk"},
        {-120, "Mid-Atlantic", "Atlantic/South_Georgia"},
        {-60, "Azores", "Atlantic/Azores"},
        {-60, "Cabo Verde Is|Cape Verde Is", "Atlantic/Cape_Verde"},
        {0, "Coordinated Universal Time", "UTC"},
        {0, "Dublin|Edinburgh|Lisbon|London|Lissabon|Londres|Londra", "Europe/London"},
        {0, "Monrovia|Reykjavik", "Atlantic/Reykjavik"},
        {0, "Sao Tome", "Africa/Sao_Tome"},
        {60, "Amsterdam|Berlin|Bern|Rome|Stockholm|Vienna|Berne|Rom|Wien", "Europe/Berlin"},
        {60, "Belgrade|Bratislava|Budapest|Ljubljana|Prague|Prag|Belgrad", "Europe/Budapest"},
        {60, "Brussels|Copenhagen|Madrid|Paris|Kopenhagen", "Europe/Paris"},
        {60, "Casablanca", "Africa/Casablanca"},
        {60, "Sarajevo|Skopje|Warsaw|Zagreb|Warschau", "Europe/Warsaw"},
        {60, "West Central Africa", "Africa/Lagos"},
        {120, "Athens|Athen", "Europe/Athens"},
        {120, "Bucharest|Bukarest|Bucarest", "Europe/Bucharest"},
        {120, "Beirut", "Asia/Beirut"},
        {120, "Cairo|Kairo", "Africa/Cairo"},
        {120, "Chisinau", "Europe/Chisinau"},
        {120, "Gaza|Hebron", "Asia/Hebron"},
        {120, "Harare|Pretoria", "Africa/Johannesburg"},
        {120, "Helsinki|Kyiv|Kiev|Riga|Sofia|Tallinn|Vilnius|Kiew", "Europe/Helsinki"},
        {120, "Jerusalem", "Asia/Jerusalem"},
        {120, "Juba", "Africa/Juba"},
        {120, "Kaliningrad", "Europe/Kaliningrad"},
        {120, "Khartoum", "Africa/Khartoum"},
        {120, "Tripoli", "Africa/Tripoli"},
        {120, "Windhoek", "Africa/Windhoek"},
        {180, "Amman", "Asia/Amman"},
        {180, "Baghdad", "Asia/Baghdad"},
        {180, "Damascus", "Asia/Damascus"},
        {180, "Istanbul", "Europe/Istanbul"},
        {180, "Kuwait|Riyadh", "Asia/Riyadh"},
        {180, "Minsk", "Europe/Minsk"},
        {180, "Moscow|St. Petersburg|Moskau", "Europe/Moscow"},
        {180, "Nairobi", "Africa/Nairobi"},
        {180, "Volgograd", "Europe/Volgograd"},
        {210, "Tehran|Teheran", "Asia/Tehran"},
        {240, "Abu Dhabi|Muscat", "Asia/Dubai"},
        {240, "Astrakhan|Ulyanovsk", "Europe/Astrakhan"},
        {240, "Baku", "Asia/Baku"},
        {240, "Izhevsk|Samara", "Europe/Samara"},
        {240, "Port Louis", "Indian/Mauritius"},
        {240, "Saratov", "Europe/Saratov"},
        {240, "Tbilisi", "Asia/Tbilisi"},
        {240, "Yerevan", "Asia/Yerevan"},
        {270, "Kabul", "Asia/Kabul"},
        {300, "Ashgabat", "Asia/Ashgabat"},
        {300, "Tashkent", "Asia/Tashkent"},
        {300, "Astana|Almaty", "Asia/Almaty"},
        {300, "Ekaterinburg", "Asia/Yekaterinburg"},
        {300, "Islamabad|Karachi", "Asia/Karachi"},
        {300, "Qyzylorda", "Asia/Qyzylorda"},
        {330, "Chennai|Kolkata|Mumbai|New Delhi|Calcutta", "Asia/Kolkata"},
        {330, "Sri Jayawardenepura", "Asia/Colombo"},
        {345, "Kathmandu|Katmandu", "Asia/Kathmandu"},
        {360, "Dhaka", "Asia/Dhaka"},
        {360, "Omsk", "Asia/Omsk"},
        {390, "Yangon|Rangoon", "Asia/Yangon"},
        {420, "Bangkok|Hanoi|Jakarta", "Asia/Bangkok"},
        {420, "Barnaul|Gorno-Altaysk", "Asia/Barnaul"},
        {420, "Hovd", "Asia/Hovd"},
        {420, "Krasnoyarsk", "Asia/Krasnoyarsk"},
        {420, "Novosibirsk|Almaty, Novosibirsk", "Asia/Novosibirsk"},
        {420, "Tomsk", "Asia/Tomsk"},
        {480, "Beijing|Chongqing|Hong Kong|Urumqi|Peking", "Asia/Shanghai"},
        {480, "Irkutsk", "Asia/Irkutsk"},
        {480, "Kuala Lumpur|Singapore", "Asia/Singapore"},
        {480, "Perth", "Australia/Perth"},
        {480, "Taipei", "Asia/Taipei"},
        {480, "Ulaanbaatar|Ulaan Bataar", "Asia/Ulaanbaatar"},
        {525, "Eucla", "Australia/Eucla"},
        {540, "Chita", "Asia/Chita"},
        {540, "Osaka|Sapporo|Tokyo|Tokio", "Asia/Tokyo"},
        {540, "Pyongyang", "Asia/Pyongyang"},
        {540, "Seoul", "Asia/Seoul"},
        {540, "Yakutsk", "Asia/Yakutsk"},
        {570, "Adelaide", "Australia/Adelaide"},
        {570, "Darwin", "Australia/Darwin"},
        {600, "Brisbane", "Australia/Brisbane"},
        {600, "Canberra|Melbourne|Sydney", "Australia/Sydney"},
        {600, "Guam|Port Moresby", "Pacific/Port_Moresby"},
        {600, "Hobart", "Australia/Hobart"},
        {600, "Vladivostok|Wladiwostok", "Asia/Vladivostok"},
        {630, "Lord Howe Island", "Australia/Lord_Howe"},
        {660, "Bougainville Island", "Pacific/Bougainville"},
        {660, "Chokurdakh", "Asia/Srednekolymsk"},
        {660, "Magadan", "Asia/Magadan"},
        {660, "Norfolk Island", "Pacific/Norfolk"},
        {660, "Sakhalin", "Asia/Sakhalin"},
        {660, "Solomon Is|New Caledonia|Magadan, Solomon Is, New Caledonia", "Pacific/Guadalcanal"},
        {720, "Anadyr|Petropavlovsk-Kamchatsky", "Asia/Kamchatka"},
        {720, "Auckland|Wellington", "Pacific/Auckland"},
        {720, "Coordinated Universal Time+12", "Etc/GMT-12"},
        {720, "Fiji", "Pacific/Fiji"},
        {765, "Chatham Islands", "Pacific/Chatham"},
        {780, "Coordinated Universal Time+13", "Etc/GMT-13"},
        {780, "Nuku'alofa", "Pacific/Tongatapu"},
        {780, "Samoa", "Pacific/Apia"},
        {840, "Kiritimati Island", "Pacific/Kiritimati"},
    };
    return zones;
}

} // namespace quorvel::freedesktop
