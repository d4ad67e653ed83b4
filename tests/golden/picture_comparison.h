// Compares two pictures: pixel by pixel where both were drawn by the same libraries with the same
// fonts; by what is where, and in which colour, where glyphs may have other edges.
#pragma once

#include <string>
#include <vector>

#include "tests/golden/picture.h"

namespace quorvel::golden {

// The share of pixels that differ; 1 for pictures of different sizes or kinds. A pixel differs when
// a component is off by more than 24; glyph edges may.
double differingShare(const Picture& golden, const Picture& drawn);

// How far apart, in points, the same edge may be in two pictures of the same structure.
inline constexpr double positionTolerance = 2;
// By how much of its width a text may be wider or narrower beside that, for another font's sake.
inline constexpr double widthTolerance = 0.05;
// How much a component of an area's colour may differ, and one of a text's or line's.
inline constexpr int areaTolerance = 8;
inline constexpr int inkTolerance = 32;

// What differs in the structure, one sentence each, at most ten; empty if nothing does.
//
// The structure is the pictures' size; the colours of areas that both have in one place; and the
// boxes around what lies between areas, such as a line of text, an icon or a separator: where they
// are, and the range of their colours. A box is in its place if it starts or ends where the other
// does, or as far behind the box before it in the same line. The scale is that of the pictures, in
// pixels per point.
std::vector<std::string> structuralDifferences(const Picture& golden, const Picture& drawn,
                                               double scale);

} // namespace quorvel::golden
