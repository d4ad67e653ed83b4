// The program's texts in the user's language, from the catalogs that chooseLanguage() or
// useCatalogs() has named. A text that has no translation is returned as it was passed, in English.
// All results live as long as the process. Any thread may call these functions.
#pragma once

#include <string>

#include "base/translatable_text.h"

namespace quorvel::freedesktop {

const char* translated(const char* text);
std::string translated(const std::string& text); // for texts that were marked elsewhere
// A text that stands in our catalogs or in the system's.
std::string translated(const TranslatableText& text);
// The form for `count` things; "{1}" in both texts is for filled(), for instance with the count.
const char* translatedPlural(const char* one, const char* many, unsigned long count);
// For a word that may have to be translated differently elsewhere; `context` says where it stands
// and is itself not translated.
const char* translatedInContext(const char* context, const char* text);

} // namespace quorvel::freedesktop
