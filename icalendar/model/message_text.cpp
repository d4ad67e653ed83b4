#include "icalendar/model/message_text.h"

#include <string>

#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {

TranslatableText quoted(std::string_view text) {
    constexpr std::size_t longest = 60; // a line may have megabytes
    std::string result = "\"";
    for (const char c : validUtf8(text.substr(0, longest))) {
        const auto byte = static_cast<unsigned char>(c);
        result += byte < 0x20 || byte == 0x7F ? '?' : c;
    }
    return TranslatableText::verbatim(result + (text.size() > longest ? "...\"" : "\""));
}

} // namespace quorvel::icalendar
