// The command line of a desktop entry, taken apart into the arguments of a process.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// What the codes of the line stand for beside the link.
struct EntryFacts {
    std::string name;
    std::string icon; // empty where there is none
    std::string file; // the entry's own
};

// Never empty. Absent where the line is none. The link takes the place of %u or %U where that is a
// word of its own or all of an option's value; in the middle of other words, which might be a
// script, it is left out.
std::optional<std::vector<std::string>> argumentsOf(const std::string& execLine,
                                                    const EntryFacts& facts,
                                                    const std::optional<std::string>& link);

} // namespace quorvel::freedesktop
