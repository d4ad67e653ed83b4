// Where the entries of a property list stand in its text, so that one can be changed while every
// other byte stays.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

// Offsets in bytes; each end is behind the last byte.
struct EntryPlace {
    std::string key; // empty in an array
    std::size_t start = 0;
    std::size_t keyEnd = 0; // these three are of a dictionary only
    std::size_t valueStart = 0;
    std::size_t valueEnd = 0; // equals valueStart if the key is its own value
    std::size_t end = 0;
};

// The outermost dictionary or array.
struct ListPlaces {
    std::vector<EntryPlace> entries; // in the order of the text; a key may occur again
    std::size_t start = 0;           // where the list begins
    std::size_t contentsEnd = 0;     // where its closing tag or bracket begins
};

} // namespace quorvel::freedesktop
