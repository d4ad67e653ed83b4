// Reads profiles.ini, Thunderbird's list of its profiles.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvel::freedesktop::thunderbird {

// The folders of the profiles that Thunderbird starts with, without repeats: those of its
// installations, else the profile that is the default, else the first one. `folder` is that of the
// list, to which most paths in it are relative.
std::vector<std::string> usedProfiles(std::string_view list, const std::string& folder);

} // namespace quorvel::freedesktop::thunderbird
