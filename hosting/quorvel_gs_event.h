// The platform's low-level record of a touch, byte for byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace quorvel {

// Every field has 32 bits, little-endian where the record leaves the program. The first is the
// place of the pointer to the class of the record's object. The ignored ones are never written; the
// layout needs them.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the widget's own name for the record
struct Quorvel__GSEvent {
    std::uint32_t isa = 0;
    std::uint32_t flags = 0;
    std::uint32_t type = 0;
    std::uint32_t ignored1 = 0;
    float x1 = 0; // points, in the window's coordinates
    float y1 = 0;
    float x2 = 0;
    float y2 = 0;
    std::uint32_t ignored2[10] = {};
    std::uint32_t ignored3[7] = {};
    float sizeX = 0;
    float sizeY = 0;
    float x3 = 0;
    float y3 = 0;
    std::uint32_t ignored4[3] = {};
};

static_assert(sizeof(float) == 4 && std::numeric_limits<float>::is_iec559);
static_assert(std::is_standard_layout_v<Quorvel__GSEvent>);
static_assert(std::is_trivially_copyable_v<Quorvel__GSEvent>);
static_assert(sizeof(Quorvel__GSEvent) == 128);
static_assert(offsetof(Quorvel__GSEvent, isa) == 0);
static_assert(offsetof(Quorvel__GSEvent, flags) == 4);
static_assert(offsetof(Quorvel__GSEvent, type) == 8);
static_assert(offsetof(Quorvel__GSEvent, ignored1) == 12);
static_assert(offsetof(Quorvel__GSEvent, x1) == 16);
static_assert(offsetof(Quorvel__GSEvent, y1) == 20);
static_assert(offsetof(Quorvel__GSEvent, x2) == 24);
static_assert(offsetof(Quorvel__GSEvent, y2) == 28);
static_assert(offsetof(Quorvel__GSEvent, ignored2) == 32);
static_assert(offsetof(Quorvel__GSEvent, ignored3) == 72);
static_assert(offsetof(Quorvel__GSEvent, sizeX) == 100);
static_assert(offsetof(Quorvel__GSEvent, sizeY) == 104);
static_assert(offsetof(Quorvel__GSEvent, x3) == 108);
static_assert(offsetof(Quorvel__GSEvent, y3) == 112);
static_assert(offsetof(Quorvel__GSEvent, ignored4) == 116);

} // namespace quorvel
