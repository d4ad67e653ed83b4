#include "app/program_bundle.h"

#include <string_view>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::LoadedBundle;
using freedesktop::translated;

namespace {

std::string joinedNames(const std::vector<std::string_view>& names) {
    std::string text;
    for (const std::string_view name : names) {
        text += (text.empty() ? "" : ", ") + std::string(name);
    }
    return text;
}

} // namespace

CommandResult<ProgramBundle> loadProgramBundle(freedesktop::FreedesktopPlatform& platform,
                                               const std::string& folder,
                                               const std::string& controllerName) {
    const auto bundle = platform.loadBundle(folder);
    if (!bundle) {
        return operationFailure(bundle.error());
    }
    const LoadedBundle& loaded = **bundle;
    const std::string& name = controllerName.empty() ? loaded.principalClass() : controllerName;
    if (name.empty()) {
        return operationFailure(
            {filled(translated("the bundle '{1}' names no principal class"), {folder}),
             {},
             translated("name a folder such as Quorvel.bundle with --bundle")});
    }
    if (!loaded.hasClass(name)) {
        return usageFailure(
            {filled(translated("the bundle has no controller '{1}'"), {name}),
             {},
             filled(translated("it has {1}"), {joinedNames(loaded.controllerClassNames())})});
    }
    return ProgramBundle{*bundle, name};
}

} // namespace quorvel::app
