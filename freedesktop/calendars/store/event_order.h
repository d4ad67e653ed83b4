// The order of the events that a store returns.
#pragma once

#include <memory>

#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

// Sorts by start; all-day events first, then by title, then by identifier. Neither is null.
bool comesBefore(const std::shared_ptr<const platform::EKEvent>& a,
                 const std::shared_ptr<const platform::EKEvent>& b);

} // namespace quorvel::freedesktop
