// Parses the command line of a desktop entry into the arguments of a process.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// The values of the field codes other than the link.
struct EntryFacts {
    std::string name;
    std::string icon; // empty: none
    std::string file; // of the entry itself
};

// Never empty. Absent if the line is invalid. The links replace a %U that is a word of its own; the
// first of them replaces a %u, and a code that is the whole value of an option. In the middle of
// other words, which might be a script, the code is removed instead.
std::optional<std::vector<std::string>> argumentsOf(const std::string& execLine,
                                                    const EntryFacts& facts,
                                                    std::span<const std::string> links);

} // namespace quorvel::freedesktop
