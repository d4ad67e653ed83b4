// What is wrong in the files of the settings.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "freedesktop/rendering/rendering.h"

namespace quorvel::app {

// The key that a misspelt one stands for. Absent: none is near enough.
std::optional<std::string_view> likeliestSetting(std::string_view misspelt);

// In the settings' file, the calendar-selection file and the calendar application's file: what
// cannot be read, keys that the widget does not know, values that it cannot use. `where` has the
// file, with line and column if they are known. Pictures that settings name are read.
std::vector<Error> settingProblems(const std::string& preferencesFolder,
                                   freedesktop::Rendering& rendering);

} // namespace quorvel::app
