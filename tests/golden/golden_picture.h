// Compares drawn pictures with those that a person has checked.
#pragma once

#include <string>

namespace quorvel::golden {

// Where a test draws the picture of that name.
std::string drawnPicture(const std::string& name);

// The name of a picture, as the name of a test.
std::string testName(std::string name);

// Compares the drawn picture of that name with the one in the sources: pixel by pixel with the
// libraries and fonts that those were drawn with, and by their structure with others. The name ends
// in "@", the scale, and "x.png".
void expectGolden(const std::string& name);

} // namespace quorvel::golden
