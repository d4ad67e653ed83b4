// Chooses the language of the program's texts and the folder of their translations.
#pragma once

#include <optional>
#include <string>

namespace quorvel::freedesktop {

inline constexpr const char* messageDomain = "quorvel"; // the name of the catalogs
inline constexpr const char* systemDomain = "libc";     // of the messages of strerror()

// `folder` contains the catalogs as LANGUAGE/LC_MESSAGES/quorvel.mo. Changes nothing but where our
// own texts come from: a plugin leaves the language to the program that it is part of.
void useCatalogs(const std::string& folder);

// For a program of our own: chooses the language of all texts of the process, those of its
// libraries included. `locale` is in the form of canonicalLocale(); absent: the environment's
// languages. Numbers and dates remain those of the "C" locale, which parsers rely on; characters
// are UTF-8. Without a locale of the system to carry the language, texts remain English. Call it
// first in main(): it changes the environment, which is safe only while there is one thread.
void chooseLanguage(const std::string& folder, const std::optional<std::string>& locale);

// chooseLanguage() may replace LANGUAGE in this process; the programs that it starts get the user's
// own value. Absent: unset.
std::optional<std::string> usersLanguageVariable();
// The same for a program that replaces this one.
void restoreUsersLanguageVariable();

} // namespace quorvel::freedesktop
