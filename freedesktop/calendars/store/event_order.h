// The order in which a store hands out its occurrences.
#pragma once

#include <memory>

#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

// By start; those of whole days before the others, then by title, then by identifier. Neither is
// null.
bool comesBefore(const std::shared_ptr<const platform::EKEvent>& a,
                 const std::shared_ptr<const platform::EKEvent>& b);

} // namespace quorvel::freedesktop
