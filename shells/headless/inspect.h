// A script of host events, and everything that can be seen of the widget while it runs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "platform/ns_date.h"

namespace quorvel::headless {

class WidgetSession;
struct Step;

// What a step changes in the widget's surroundings.
class Surroundings {
public:
    virtual ~Surroundings() = default;
    virtual void setPreferencesFolder(const std::string& folder) = 0;
    virtual void setCalendars(const std::string& source) = 0;
    virtual void setNow(platform::NSDate date) = 0;
};

// Loads the session's controller, runs the steps and gives the JSON document about it. The host
// only records: it neither opens nor activates anything, nor asks for the size again, nor resizes
// the view, except to `width` (points) once after it was made, where that is given. Throws
// UsageError, before anything runs, for a step that the controller does not have.
std::string inspectDocument(WidgetSession& session, Surroundings& surroundings,
                            const std::vector<Step>& steps,
                            const std::optional<platform::CGFloat>& width);

} // namespace quorvel::headless
