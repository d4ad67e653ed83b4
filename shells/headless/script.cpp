#include "shells/headless/script.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <system_error>
#include <utility>

#include "base/number_text.h"
#include "freedesktop/dates/instant_text.h"
#include "freedesktop/language/messages.h"

namespace quorvel::headless {

using freedesktop::TimeZone;
using freedesktop::translated;
using platform::CGFloat;
using platform::CGPoint;

namespace {

// Larger than any display, and small enough for exact sums.
constexpr CGFloat farthest = 1e6; // points

using TextPair = std::pair<std::string_view, std::string_view>;

// A step of the form name:value.
struct ValueText {
    std::string_view step; // with its name
    std::string_view value;
    const TimeZone& zone;
};

Error stepError(std::string_view step, std::string_view remedy) {
    return {filled(translated("the step '{1}' cannot be run"), {step}), {}, std::string(remedy)};
}

Error formError(std::string_view step, std::string_view form) {
    return stepError(step, filled(translated("write it as {1}"), {form}));
}

// The texts before and after the first mark; absent where there is no mark.
std::optional<TextPair> splitAt(char mark, std::string_view value) {
    const std::size_t place = value.find(mark);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    return TextPair{value.substr(0, place), value.substr(place + 1)};
}

Result<double> parseStepNumber(std::string_view number, std::string_view step) {
    return parseNumber(
        number, filled(translated("a number of the step '{1}' cannot be '{2}'"), {step, number}));
}

// A distance or a coordinate of a finger.
Result<CGFloat> parseFingerNumber(std::string_view number, std::string_view step) {
    Result<CGFloat> points = parseStepNumber(number, step);
    if (points && std::abs(*points) > farthest) {
        return stepError(step, translated("give points from -1000000 to 1000000"));
    }
    return points;
}

Result<CGPoint> parseFingerPair(const TextPair& numbers, std::string_view step) {
    const Result<CGFloat> x = parseFingerNumber(numbers.first, step);
    if (!x) {
        return x.error();
    }
    const Result<CGFloat> y = parseFingerNumber(numbers.second, step);
    if (!y) {
        return y.error();
    }
    return CGPoint{*x, *y};
}

Result<std::size_t> parseRow(std::string_view number, std::string_view step) {
    std::size_t row = 0;
    const char* end = number.data() + number.size();
    const auto [rest, error] = std::from_chars(number.data(), end, row);
    if (error != std::errc() || rest != end) {
        return stepError(step, translated("count the rows from 0"));
    }
    return row;
}

Result<StepAction> parseLayout(const ValueText& text) {
    const auto numbers = splitAt(',', text.value);
    if (!numbers) {
        return formError(text.step, "layout:WIDTH,HEIGHT");
    }
    const Result<double> width = parseStepNumber(numbers->first, text.step);
    if (!width) {
        return width.error();
    }
    const Result<double> height = parseStepNumber(numbers->second, text.step);
    if (!height) {
        return height.error();
    }
    return StepAction(LayoutStep{{*width, *height}});
}

Result<StepAction> parseScroll(const ValueText& text) {
    const Result<double> offset = parseStepNumber(text.value, text.step);
    if (!offset) {
        return offset.error();
    }
    return StepAction(ScrollStep{*offset});
}

Result<StepAction> parsePull(const ValueText& text) {
    const auto numbers = splitAt(':', text.value);
    if (!numbers) {
        return formError(text.step, "pull:ROW:DX");
    }
    const Result<std::size_t> row = parseRow(numbers->first, text.step);
    if (!row) {
        return row.error();
    }
    const Result<CGFloat> distance = parseFingerNumber(numbers->second, text.step);
    if (!distance) {
        return distance.error();
    }
    return StepAction(PullStep{*row, *distance});
}

Result<StepAction> parseDrag(const ValueText& text) {
    const auto parts = splitAt(':', text.value);
    const auto startNumbers = parts ? splitAt(',', parts->first) : std::nullopt;
    const auto distanceNumbers = parts ? splitAt(',', parts->second) : std::nullopt;
    if (!startNumbers || !distanceNumbers) {
        return formError(text.step, "drag:X,Y:DX,DY");
    }
    const Result<CGPoint> start = parseFingerPair(*startNumbers, text.step);
    if (!start) {
        return start.error();
    }
    const Result<CGPoint> distance = parseFingerPair(*distanceNumbers, text.step);
    if (!distance) {
        return distance.error();
    }
    return StepAction(DragStep{*start, {distance->x, distance->y}});
}

Result<StepAction> parseTap(const ValueText& text) {
    const auto numbers = splitAt(',', text.value);
    if (!numbers) {
        return formError(text.step, "tap:X,Y");
    }
    const Result<CGPoint> location = parseFingerPair(*numbers, text.step);
    if (!location) {
        return location.error();
    }
    return StepAction(TapStep{*location});
}

// A step whose value is a name and must not be empty.
template <class NameStep>
Result<StepAction> parseNameStep(const ValueText& text) {
    if (text.value.empty()) {
        return stepError(text.step, translated("name something after the colon"));
    }
    return StepAction(NameStep{std::string(text.value)});
}

Result<StepAction> parseNow(const ValueText& text) {
    const std::optional<platform::NSDate> date = freedesktop::parseInstant(text.value, text.zone);
    if (!date) {
        return stepError(text.step, translated("write the instant like 2026-03-10T10:00:00Z"));
    }
    return StepAction(NowStep{*date});
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
    Result<StepAction> (*parse)(const ValueText&);
};

constexpr std::array<ValueStep, 8> valueSteps{{{"layout", parseLayout},
                                               {"scroll", parseScroll},
                                               {"pull", parsePull},
                                               {"drag", parseDrag},
                                               {"tap", parseTap},
                                               {"preferences", parseNameStep<PreferencesStep>},
                                               {"calendars", parseNameStep<CalendarsStep>},
                                               {"now", parseNow}}};

Error unknownStep(std::string_view text) {
    return {filled(translated("unknown step '{1}'"), {text}),
            {},
            translated("'quorvel inspect --help' lists the steps")};
}

Result<StepAction> parseAction(std::string_view text, const TimeZone& zone) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        const auto* step = std::ranges::find(plainSteps(), text, &PlainStep::name);
        return step != plainSteps().end() ? Result<StepAction>(step->action) : unknownStep(text);
    }
    const auto* step = std::ranges::find(valueSteps, text.substr(0, colon), &ValueStep::name);
    if (step == valueSteps.end()) {
        return unknownStep(text);
    }
    return step->parse({text, text.substr(colon + 1), zone});
}

} // namespace

Result<double> parseNumber(std::string_view text, const std::string& problem) {
    const std::optional<double> number = wholeNumber(text);
    if (!number) {
        return Error{problem, {}, translated("give a decimal number")};
    }
    return *number;
}

Result<Step> parseStep(std::string_view text, const TimeZone& zone) {
    Result<StepAction> action = parseAction(text, zone);
    if (!action) {
        return action.error();
    }
    return Step{std::string(text), *std::move(action)};
}

} // namespace quorvel::headless
