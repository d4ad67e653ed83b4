#include "shells/headless/script.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <system_error>
#include <utility>

#include "freedesktop/dates/instant_text.h"
#include "shells/headless/usage_error.h"

namespace quorvel::headless {

using freedesktop::TimeZone;
using platform::CGFloat;

namespace {

// Farther than any finger, and near enough for every sum to be exact.
constexpr CGFloat farthest = 1e6; // points

// A step of the form name:value.
struct ValueText {
    std::string_view step; // the whole
    std::string_view value;
    const TimeZone& zone;
};

[[noreturn]] void throwBadStep(std::string_view step, std::string_view remedy) {
    throw UsageError("the step '" + std::string(step) + "' cannot be run: " + std::string(remedy));
}

// At the first mark; throws where there is none.
std::pair<std::string_view, std::string_view>
splitAt(char mark, std::string_view value, std::string_view step, std::string_view form) {
    const std::size_t place = value.find(mark);
    if (place == std::string_view::npos) {
        throwBadStep(step, "write it as " + std::string(form));
    }
    return {value.substr(0, place), value.substr(place + 1)};
}

double numberOfStep(std::string_view number, std::string_view step) {
    return parseNumber(number, "a number of the step '" + std::string(step) + "'");
}

CGFloat fingerNumberOfStep(std::string_view number, std::string_view step) {
    const CGFloat points = numberOfStep(number, step);
    if (std::abs(points) > farthest) {
        throwBadStep(step, "give points from -1000000 to 1000000");
    }
    return points;
}

std::size_t rowOfStep(std::string_view number, std::string_view step) {
    std::size_t row = 0;
    const char* end = number.data() + number.size();
    const auto [rest, error] = std::from_chars(number.data(), end, row);
    if (error != std::errc() || rest != end) {
        throwBadStep(step, "count the rows from 0");
    }
    return row;
}

StepAction parseLayout(const ValueText& text) {
    const auto [width, height] = splitAt(',', text.value, text.step, "layout:WIDTH,HEIGHT");
    return LayoutStep{{numberOfStep(width, text.step), numberOfStep(height, text.step)}};
}

StepAction parseScroll(const ValueText& text) {
    return ScrollStep{numberOfStep(text.value, text.step)};
}

StepAction parsePull(const ValueText& text) {
    const auto [row, distance] = splitAt(':', text.value, text.step, "pull:ROW:DX");
    return PullStep{rowOfStep(row, text.step), fingerNumberOfStep(distance, text.step)};
}

StepAction parseDrag(const ValueText& text) {
    constexpr std::string_view form = "drag:X,Y:DX,DY";
    const auto [start, way] = splitAt(':', text.value, text.step, form);
    const auto [x, y] = splitAt(',', start, text.step, form);
    const auto [dx, dy] = splitAt(',', way, text.step, form);
    return DragStep{{fingerNumberOfStep(x, text.step), fingerNumberOfStep(y, text.step)},
                    {fingerNumberOfStep(dx, text.step), fingerNumberOfStep(dy, text.step)}};
}

StepAction parseTap(const ValueText& text) {
    const auto [x, y] = splitAt(',', text.value, text.step, "tap:X,Y");
    return TapStep{{fingerNumberOfStep(x, text.step), fingerNumberOfStep(y, text.step)}};
}

std::string nameOfStep(const ValueText& text) {
    if (text.value.empty()) {
        throwBadStep(text.step, "name something after the colon");
    }
    return std::string(text.value);
}

StepAction parsePreferences(const ValueText& text) {
    return PreferencesStep{nameOfStep(text)};
}

StepAction parseCalendars(const ValueText& text) {
    return CalendarsStep{nameOfStep(text)};
}

StepAction parseNow(const ValueText& text) {
    const std::optional<platform::NSDate> date = freedesktop::parseInstant(text.value, text.zone);
    if (!date) {
        throwBadStep(text.step, "write the instant like 2026-03-10T10:00:00Z");
    }
    return NowStep{*date};
}

struct PlainStep {
    std::string_view name;
    StepAction action;
};

const std::array<PlainStep, 6>& plainSteps() {
    static const std::array<PlainStep, 6> steps{{{"present", PresentStep{}},
                                                 {"dismiss", DismissStep{}},
                                                 {"size", SizeStep{}},
                                                 {"full-view", FullViewStep{}},
                                                 {"placeholder", PlaceholderStep{}},
                                                 {"unload", UnloadStep{}}}};
    return steps;
}

struct ValueStep {
    std::string_view name;
    StepAction (*parse)(const ValueText&);
};

constexpr std::array<ValueStep, 8> valueSteps{{{"layout", parseLayout},
                                               {"scroll", parseScroll},
                                               {"pull", parsePull},
                                               {"drag", parseDrag},
                                               {"tap", parseTap},
                                               {"preferences", parsePreferences},
                                               {"calendars", parseCalendars},
                                               {"now", parseNow}}};

// Absent for a name that is none.
std::optional<StepAction> parseAction(std::string_view text, const TimeZone& zone) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        const auto* step = std::ranges::find(plainSteps(), text, &PlainStep::name);
        return step != plainSteps().end() ? std::optional(step->action) : std::nullopt;
    }
    const auto* step = std::ranges::find(valueSteps, text.substr(0, colon), &ValueStep::name);
    if (step == valueSteps.end()) {
        return std::nullopt;
    }
    return step->parse({text, text.substr(colon + 1), zone});
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
    const std::optional<StepAction> action = parseAction(text, zone);
    if (!action) {
        throw UsageError("unknown step '" + std::string(text) +
                         "': 'quorvel inspect --help' lists the steps");
    }
    return {std::string(text), *action};
}

} // namespace quorvel::headless
