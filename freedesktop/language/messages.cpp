#include "freedesktop/language/messages.h"

#include <libintl.h>

#include "freedesktop/language/catalogs.h"

namespace quorvel::freedesktop {

// An empty text stands for the catalog's own description.
const char* translated(const char* text) {
    return *text == '\0' ? text : dgettext(messageDomain, text);
}

std::string translated(const std::string& text) {
    return translated(text.c_str());
}

const char* translatedPlural(const char* one, const char* many, unsigned long count) {
    return dngettext(messageDomain, one, many, count);
}

const char* translatedInContext(const char* context, const char* text) {
    constexpr char endOfContext = '\004';
    const std::string key = std::string(context) + endOfContext + text;
    const char* const translation = dgettext(messageDomain, key.c_str());
    return translation == key.c_str() ? text : translation;
}

} // namespace quorvel::freedesktop
