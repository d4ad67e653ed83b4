#include "freedesktop/launch/openable_link.h"

#include <algorithm>
#include <array>

#include "base/ascii_text.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {

namespace {

constexpr std::array<std::string_view, 2> schemes = {"x-apple-calevent", "fantastical2"};
// The kernel allows arguments of 128 KiB, and the handler may add to them.
constexpr std::size_t longestLink = std::size_t{32} << 10U;
constexpr std::size_t longestIdentifier = 255; // the limit for file names
constexpr std::size_t longestShown = 80;
constexpr std::string_view entrySuffix = ".desktop";

bool isGraphic(char c) {
    return c > ' ' && c < '\x7F';
}

} // namespace

Result<void> checkLink(std::string_view link) {
    const std::string_view scheme = link.substr(0, link.find(':'));
    if (scheme == link || std::find(schemes.begin(), schemes.end(), scheme) == schemes.end()) {
        return Error{translatable("its scheme is none of the widget's"), {}, {}};
    }
    if (link.size() > longestLink) {
        return Error{translatable("it is too long"), {}, {}};
    }
    if (!std::all_of(link.begin(), link.end(), isGraphic)) {
        return Error{translatable("it holds characters that no link may hold"), {}, {}};
    }
    return {};
}

std::optional<std::string> desktopEntryName(std::string_view identifier) {
    std::string name(identifier.substr(0, longestIdentifier + 1));
    if (!identifier.ends_with(entrySuffix)) {
        name += entrySuffix;
    }
    const bool isName = std::all_of(identifier.begin(), identifier.end(), [](char c) {
        return isAsciiLetterOrDigit(c) || c == '.' || c == '_' || c == '-';
    });
    if (!isName || name.size() > longestIdentifier || name.size() == entrySuffix.size() ||
        name.starts_with('.')) {
        return std::nullopt;
    }
    return name;
}

std::string shortened(std::string_view text) {
    return text.size() <= longestShown ? std::string(text)
                                       : std::string(text.substr(0, longestShown)) + "...";
}

} // namespace quorvel::freedesktop
