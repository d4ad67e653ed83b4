// The system's text for an error number, which is translated where it is shown.
#pragma once

#include "base/translatable_text.h"

namespace quorvel::freedesktop {

// In English, whatever the language of the process is; `number` is an errno.
TranslatableText systemErrorText(int number);

} // namespace quorvel::freedesktop
