// Reads a compiled catalog of translations.
#pragma once

#include <string>
#include <vector>

namespace quorvel {

struct CatalogEntry {
    std::string text;   // in English, without its context; of a plural the form for one
    std::string plural; // in English; empty: the text has no plural
    std::vector<std::string> translations; // one for each plural form of the language, else one
};

struct Catalog {
    std::string header; // lines of "Name: value"
    std::vector<CatalogEntry> entries;
};

// Throws std::runtime_error for a file that is no catalog of this machine's byte order.
Catalog readCatalog(const std::string& path);

} // namespace quorvel
