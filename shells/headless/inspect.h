// Runs a script of host events on the widget and documents everything that can be observed of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/geometry.h"
#include "platform/ns_date.h"

namespace quorvel::headless {

class WidgetSession;
struct Step;

// The parts of the widget's environment that a step can replace.
class Surroundings {
public:
    virtual ~Surroundings() = default;
    virtual void setPreferencesFolder(const std::string& folder) = 0;
    virtual void setCalendars(const std::string& source) = 0;
    virtual void setNow(platform::NSDate date) = 0;
};

// Loads the session's controller, runs the steps and returns a JSON document about each step and
// the final state. The host only records: it opens and activates nothing, does not ask for the
// preferred size by itself, and never resizes the view, except to `width` (points), where given,
// when the view is made. The error, found before any step runs, is a step that the controller does
// not support.
Result<std::string> inspectDocument(WidgetSession& session, Surroundings& surroundings,
                                    const std::vector<Step>& steps,
                                    const std::optional<platform::CGFloat>& width);

} // namespace quorvel::headless
