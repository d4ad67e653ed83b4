// Parses the command line of a desktop entry into the arguments of a process.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// The values of the field codes other than the link.
struct EntryFacts {
    std::string name;
    std::string icon; // empty: none
    std::string file; // of the entry itself
};

// Never empty. Absent if the line is invalid. The link replaces a %u or %U that is a word of its
// own or the whole value of an option. In the middle of other words, which might be a script, the
// code is removed instead.
std::optional<std::vector<std::string>> argumentsOf(const std::string& execLine,
                                                    const EntryFacts& facts,
                                                    const std::optional<std::string>& link);

} // namespace quorvel::freedesktop
