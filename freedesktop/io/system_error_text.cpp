#include "freedesktop/io/system_error_text.h"

#include <string>

#include <cstring>

namespace quorvel::freedesktop {

TranslatableText systemErrorText(int number) {
    const char* const text = strerrordesc_np(number);
    return text != nullptr ? TranslatableText(text)
                           : TranslatableText::verbatim("errno " + std::to_string(number));
}

} // namespace quorvel::freedesktop
