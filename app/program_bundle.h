// The widget bundle that a command shows, and the controller in it.
#pragma once

#include <memory>
#include <string>

#include "app/failure.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::app {

struct ProgramBundle {
    std::shared_ptr<const freedesktop::LoadedBundle> bundle; // never null
    std::string controllerName;                              // a class of the bundle
};

// `controllerName` as on the command line; empty: the bundle's principal class. A name that is no
// class of the bundle is wrong usage, a bundle that cannot be loaded is not.
CommandResult<ProgramBundle> loadProgramBundle(freedesktop::FreedesktopPlatform& platform,
                                               const std::string& folder,
                                               const std::string& controllerName);

} // namespace quorvel::app
