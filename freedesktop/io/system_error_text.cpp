#include "freedesktop/io/system_error_text.h"

#include <clocale>
#include <cstring>

namespace quorvel::freedesktop {

TranslatableText systemErrorText(int number) {
    static const locale_t english = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return ::strerror_l(number, english);
}

} // namespace quorvel::freedesktop
