// Reads decimal numbers, in every locale the same: "12", "-0.5", ".5", "5.", "1.5e-3". White space,
// a leading plus, words such as "inf" and other bases are no part of a number.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace quorvel {

struct LeadingNumber {
    double value;       // the nearest; beyond the range of double infinity or 0, with the sign
    std::size_t length; // of its text, in bytes
};

// The longest number that the text starts with. Absent: it starts with none.
std::optional<LeadingNumber> leadingNumber(std::string_view text);

// Absent: the text as a whole is no such number, or it is beyond the range of double.
std::optional<double> wholeNumber(std::string_view text);

} // namespace quorvel
