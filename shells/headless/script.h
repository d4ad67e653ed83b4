// The steps of a script of host events.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "base/result.h"
#include "platform/geometry.h"
#include "platform/ns_date.h"

namespace quorvel::icalendar {
class TimeZone;
} // namespace quorvel::icalendar

namespace quorvel::headless {

struct PresentStep {};
struct DismissStep {};
struct SizeStep {};
struct FullViewStep {};
struct PlaceholderStep {};
struct UnloadStep {};
struct LayoutStep {
    platform::CGSize size; // points
};
struct ScrollStep {
    platform::CGFloat offset = 0; // points
};
struct PullStep {
    std::size_t row = 0;
    platform::CGFloat distance = 0; // points to the right
};
struct DragStep {
    platform::CGPoint start;   // points, in the view's coordinates
    platform::CGSize distance; // points
};
struct TapStep {
    platform::CGPoint location; // points, in the view's coordinates
};
struct PreferencesStep {
    std::string folder;
};
struct CalendarsStep {
    std::string source;
};
struct NowStep {
    platform::NSDate date;
};

using StepAction = std::variant<PresentStep, DismissStep, SizeStep, FullViewStep, PlaceholderStep,
                                UnloadStep, LayoutStep, ScrollStep, PullStep, DragStep, TapStep,
                                PreferencesStep, CalendarsStep, NowStep>;

struct Step {
    std::string text; // as the user wrote it
    StepAction action;
};

// An instant without an offset is a local time of `zone`. The error names the step and what to
// write instead.
Result<Step> parseStep(std::string_view text, const icalendar::TimeZone& zone);

// A finite decimal number, with or without a fraction or an exponent, and nothing else. `problem`
// is what the error reports, such as "the width cannot be 'wide'".
Result<double> parseNumber(std::string_view text, const std::string& problem);

} // namespace quorvel::headless
