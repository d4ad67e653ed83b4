#include "freedesktop/calendars/subscriptions/calendar_address.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include <arpa/inet.h>
#include <glib.h>
#include <netinet/in.h>

#include "base/ascii_text.h"
#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t longestUrl = 8192; // bytes
constexpr std::string_view blanks = " \t\r\n";

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

// In lower case, without the colon. Absent: the text is a path.
std::optional<std::string> schemeOf(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon < 2 || !isAsciiLetter(text.front())) {
        return std::nullopt;
    }
    const std::string_view scheme = text.substr(0, colon);
    const bool isScheme = std::ranges::all_of(
        scheme, [](char c) { return isAsciiLetterOrDigit(c) || c == '+' || c == '-' || c == '.'; });
    return isScheme ? std::optional(asciiLowerCase(scheme)) : std::nullopt;
}

bool isReadScheme(std::string_view scheme) {
    return scheme == "https" || scheme == "http" || scheme == "webcal" || scheme == "webcals";
}

Error unknownScheme(const std::string& scheme) {
    return {filled(translated("addresses that begin with '{1}:' are not read"), {scheme}),
            {},
            translated("give an address that begins with 'https:', or download the calendar and "
                       "name the file")};
}

Error invalidAddress() {
    return {translated("this is not a complete address"),
            {},
            translated("write it like https://example.org/team.ics")};
}

bool isOnThisMachine(const std::string& host) {
    if (host == "localhost") {
        return true;
    }
    constexpr std::uint32_t loopbackNetwork = 127; // of IPv4, its first byte
    in_addr address{};
    in6_addr longAddress{};
    return (inet_pton(AF_INET, host.c_str(), &address) == 1 &&
            ntohl(address.s_addr) >> 24U == loopbackNetwork) ||
           (inet_pton(AF_INET6, host.c_str(), &longAddress) == 1 &&
            IN6_IS_ADDR_LOOPBACK(&longAddress));
}

Result<CalendarAddress> fileAddress(const std::string& url) {
    char* host = nullptr;
    GError* error = nullptr;
    const TextHandle path(g_filename_from_uri(url.c_str(), &host, &error));
    const TextHandle ownedHost(host);
    const ErrorHandle ownedError(error);
    if (!path) {
        return Error{translated("this file address cannot be read"),
                     {},
                     translated("write it like file:///home/me/team.ics")};
    }
    if (host != nullptr && asciiLowerCase(host) != "localhost") {
        return Error{translated("a file address cannot name another machine"),
                     {},
                     translated("give the path of the file on this machine")};
    }
    return CalendarAddress(LocalCalendars{path.get()});
}

Result<void> checkRemote(GUri* uri, const std::string& scheme, const std::string& host) {
    if (g_uri_get_userinfo(uri) != nullptr) {
        return Error{translated("the address contains a name or a password"),
                     {},
                     translated("leave them out, and store them with 'quorvel settings calendars "
                                "--subscribe ADDRESS --user NAME'")};
    }
    if (host.empty() || g_uri_get_port(uri) == 0) {
        return invalidAddress();
    }
    if (scheme == "http" && !isOnThisMachine(host)) {
        return Error{translated("an address that begins with 'http:' is not protected on its way"),
                     {},
                     translated("write 'https:' instead")};
    }
    return {};
}

Result<RemoteCalendar> remoteCalendar(std::string_view text, const std::string& scheme) {
    const std::string secure = scheme == "http" ? scheme : "https";
    const std::string address = secure + std::string(text.substr(text.find(':')));
    constexpr auto flags =
        static_cast<GUriFlags>(G_URI_FLAGS_ENCODED_PATH | G_URI_FLAGS_ENCODED_QUERY |
                               G_URI_FLAGS_ENCODED_FRAGMENT | G_URI_FLAGS_SCHEME_NORMALIZE);
    const bool isPlain = std::ranges::none_of(address, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= ' ' || byte == 0x7F || c == '\\';
    });
    const UriHandle uri(isPlain && address.size() <= longestUrl
                            ? g_uri_parse(address.c_str(), flags, nullptr)
                            : nullptr);
    if (!uri) {
        return invalidAddress();
    }
    const std::string host = asciiLowerCase(textOf(g_uri_get_host(uri.get())));
    if (const Result<void> checked = checkRemote(uri.get(), secure, host); !checked) {
        return checked.error();
    }
    const TextHandle url(g_uri_join(flags, secure.c_str(), nullptr, host.c_str(),
                                    g_uri_get_port(uri.get()), g_uri_get_path(uri.get()),
                                    g_uri_get_query(uri.get()), nullptr));
    return RemoteCalendar{url.get(), host};
}

} // namespace

Result<CalendarAddress> parseCalendarAddress(std::string_view text) {
    if (text == "-") {
        return CalendarAddress(StandardInput());
    }
    const std::string_view address = trimmed(text, blanks);
    const std::optional<std::string> scheme = schemeOf(address);
    if (scheme == "file") {
        return fileAddress(std::string(address));
    }
    if (scheme && isReadScheme(*scheme)) {
        Result<RemoteCalendar> remote = remoteCalendar(address, *scheme);
        return remote ? Result<CalendarAddress>(CalendarAddress(*std::move(remote)))
                      : remote.error();
    }
    if (scheme && address.substr(scheme->size()).starts_with("://")) {
        return unknownScheme(*scheme);
    }
    return CalendarAddress(LocalCalendars{std::string(text)});
}

Result<RemoteCalendar> parseRemoteCalendar(std::string_view text) {
    Result<CalendarAddress> address = parseCalendarAddress(text);
    if (!address) {
        return address.error();
    }
    if (auto* const remote = std::get_if<RemoteCalendar>(&*address)) {
        return std::move(*remote);
    }
    return Error{translated("this is not the address of a calendar on a server"),
                 {},
                 translated("give one that begins with 'https:' or 'webcal:'")};
}

} // namespace quorvel::freedesktop
