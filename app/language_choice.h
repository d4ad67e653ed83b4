// The language of a program's own texts.
#pragma once

#include <optional>
#include <string>

namespace quorvel::app {

// The value of the last --locale among the arguments, in the form of canonicalLocale(); absent
// without one, and for one that is unknown. It is needed before the command line is parsed, as its
// errors are in that language too.
std::optional<std::string> localeOfArguments(int argc, const char* const* argv);

// Call it first in main(): it changes the environment.
void chooseProgramLanguage(int argc, const char* const* argv);

} // namespace quorvel::app
