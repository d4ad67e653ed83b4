// Converts decimal numbers where the standard library has no std::from_chars for double.
#pragma once

#include <string_view>

namespace quorvel {

// The double that is nearest to the number, which has the form that leadingNumber() accepts as a
// whole (base/number_text.h); beyond the range of double infinity or 0, with the sign. Allocates
// nothing itself.
double convertedDecimal(std::string_view number);

} // namespace quorvel
