// Whether there may be a calendar server, before anything is loaded or asked.
#pragma once

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop::eds {

// Fails where there cannot be a calendar server; else the bus has to be asked.
Result<void, TranslatableText> checkDataServer();

} // namespace quorvel::freedesktop::eds
