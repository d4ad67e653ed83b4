#include "agenda/event_link.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace quorvel {

using namespace platform;

namespace {

// Exactly one decimal, with a point whatever the process's locale.
std::string textWithOneDecimal(double number) {
    constexpr std::size_t signPointAndDecimal = 8;
    std::array<char, std::numeric_limits<double>::max_exponent10 + signPointAndDecimal> text{};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, 1);
    return {text.data(), result.ptr};
}

} // namespace

std::string eventLinkPath(std::string_view eventIdentifier) {
    std::string path(eventIdentifier);
    std::replace(path.begin(), path.end(), ':', '/');
    path.erase(std::min(path.find("/RID"), path.size()));
    return path;
}

std::optional<NSURL> eventLink(std::string_view eventIdentifier, NSDate startDate) {
    return NSURL::URLWithString("x-apple-calevent://" + eventLinkPath(eventIdentifier) + "?o=" +
                                textWithOneDecimal(startDate.timeIntervalSinceReferenceDate));
}

} // namespace quorvel
