// The options of the platform for an embedded agenda.
#pragma once

#include "base/result.h"
#include "freedesktop/freedesktop_platform.h"

namespace quorvel::freedesktop {
struct ProgramFolders;
} // namespace quorvel::freedesktop

namespace quorvel::embedding {

struct EmbeddedAgendaOptions;

// The user's own where nothing was chosen. The error is in the user's language.
Result<freedesktop::FreedesktopOptions> platformOptions(const EmbeddedAgendaOptions& chosen,
                                                        const freedesktop::ProgramFolders& folders);

} // namespace quorvel::embedding
