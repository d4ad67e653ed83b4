// Whether this process shows the window itself.
#pragma once

namespace quorvel::window {

enum class InstanceRole {
    first,             // this process owns the name, or there is no bus
    second,            // the first one presents its window
    secondWithOptions, // likewise, and it shows something else than this process would
};

} // namespace quorvel::window
