#include "shells/headless/script.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <system_error>

#include "freedesktop/dates/instant_text.h"
#include "shells/headless/usage_error.h"

namespace quorvel::headless {

using freedesktop::TimeZone;

namespace {

[[noreturn]] void throwBadStep(std::string_view text, std::string_view remedy) {
    throw UsageError("the step '" + std::string(text) + "' cannot be run: " + std::string(remedy));
}

double numberOfStep(std::string_view number, std::string_view step) {
    return parseNumber(number, "a number of the step '" + std::string(step) + "'");
}

LayoutStep parseLayout(std::string_view size, std::string_view step) {
    const std::size_t comma = size.find(',');
    if (comma == std::string_view::npos) {
        throwBadStep(step, "write it as layout:WIDTH,HEIGHT");
    }
    return {
        {numberOfStep(size.substr(0, comma), step), numberOfStep(size.substr(comma + 1), step)}};
}

NowStep parseNow(std::string_view instant, std::string_view step, const TimeZone& zone) {
    const std::optional<platform::NSDate> date = freedesktop::parseInstant(instant, zone);
    if (!date) {
        throwBadStep(step, "write the instant like 2026-03-10T10:00:00Z");
    }
    return {*date};
}

std::string valueOfStep(std::string_view value, std::string_view step) {
    if (value.empty()) {
        throwBadStep(step, "name something after the colon");
    }
    return std::string(value);
}

} // namespace

double parseNumber(std::string_view text, std::string_view what) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
        throw UsageError(std::string(what) + " cannot be '" + std::string(text) +
                         "': give a decimal number");
    }
    return number;
}

Step parseStep(std::string_view text, const TimeZone& zone) {
    Step step{std::string(text), {}};
    const std::size_t colon = text.find(':');
    const std::string_view name = text.substr(0, colon);
    if (colon == std::string_view::npos) {
        if (name == "present") {
            step.action = PresentStep{};
            return step;
        }
        if (name == "dismiss") {
            step.action = DismissStep{};
            return step;
        }
        if (name == "size") {
            step.action = SizeStep{};
            return step;
        }
    } else {
        const std::string_view value = text.substr(colon + 1);
        if (name == "layout") {
            step.action = parseLayout(value, text);
            return step;
        }
        if (name == "scroll") {
            step.action = ScrollStep{numberOfStep(value, text)};
            return step;
        }
        if (name == "preferences") {
            step.action = PreferencesStep{valueOfStep(value, text)};
            return step;
        }
        if (name == "calendars") {
            step.action = CalendarsStep{valueOfStep(value, text)};
            return step;
        }
        if (name == "now") {
            step.action = parseNow(value, text, zone);
            return step;
        }
    }
    throw UsageError("unknown step '" + std::string(text) +
                     "': 'quorvel inspect --help' lists the steps");
}

} // namespace quorvel::headless
