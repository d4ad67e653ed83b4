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

std::string translated(const TranslatableText& text) {
    return text.translatedBy([](const std::string& part) {
        const char* const ours = translated(part.c_str());
        return std::string(ours != part.c_str() || part.empty() ? ours
                                                                : dgettext(systemDomain, ours));
    });
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
