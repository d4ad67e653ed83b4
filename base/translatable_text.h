// Texts for the user: marked where they are written, filled in where they are used. What translates
// them is freedesktop/language.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace quorvel {

// Marks a text that is translated later, such as one of a table: tools/update-messages collects the
// marked texts for translators.
constexpr const char* translatable(const char* text) {
    return text;
}

// Replaces "{1}", "{2}", ... up to "{9}" by the values. A translator may use them in another order
// and repeat them. A number without a value stays as it is, and so does every other brace.
std::string filled(std::string_view text, std::initializer_list<std::string_view> values);

} // namespace quorvel
