// A time zone as the machine's own files have it: they are kept up to date with what governments
// decide, and the data inside ICU is not.
#pragma once

#include <memory>
#include <string>

#include "freedesktop/dates/time_zone.h"

namespace quorvel::freedesktop {

// Null where the machine has no such zone, or where the name is no plain one of the IANA: parts of
// letters, digits, '_', '+' and '-' between slashes, the first one with a capital.
std::shared_ptr<const TimeZone> makeSystemTimeZone(const std::string& name);

// Of the machine's files, for instance "# version 2025b"; empty where they do not say it.
std::string systemTimeZoneEdition();

} // namespace quorvel::freedesktop
