// What a picture's pixels depend on beside this program. Stored with the golden pictures, to know
// whether pictures drawn here can be compared with them pixel by pixel.
#pragma once

#include <string>

namespace quorvel::golden {

// A line for each library that draws (its version) and for each font (a hash of its file).
std::string drawingVersions();

} // namespace quorvel::golden
