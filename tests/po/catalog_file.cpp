#include "tests/po/catalog_file.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace quorvel {

namespace {

constexpr std::uint32_t magicNumber = 0x950412DE;
constexpr char endOfContext = '\004';

class CatalogBytes {
public:
    explicit CatalogBytes(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(file), {});
        if (m_bytes.size() < 28 || number(0) != magicNumber) {
            throw std::runtime_error(path + " is no catalog");
        }
    }
    std::uint32_t number(std::size_t offset) const {
        std::uint32_t value = 0;
        std::memcpy(&value, &m_bytes.at(offset + sizeof value - 1) - (sizeof value - 1),
                    sizeof value);
        return value;
    }
    // The text that an entry of a table describes by its length and offset.
    std::string text(std::size_t entry) const {
        return m_bytes.substr(number(entry + 4), number(entry));
    }

private:
    std::string m_bytes;
};

std::vector<std::string> partsOf(const std::string& text) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == '\0') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

} // namespace

Catalog readCatalog(const std::string& path) {
    const CatalogBytes bytes(path);
    Catalog catalog;
    for (std::uint32_t i = 0; i < bytes.number(8); ++i) {
        std::string key = bytes.text(bytes.number(12) + i * std::size_t{8});
        const std::string translation = bytes.text(bytes.number(16) + i * std::size_t{8});
        if (key.empty()) {
            catalog.header = translation;
            continue;
        }
        key.erase(0, key.find(endOfContext) + 1);
        const std::vector<std::string> texts = partsOf(key);
        catalog.entries.push_back(
            {texts.front(), texts.size() > 1 ? texts[1] : "", partsOf(translation)});
    }
    return catalog;
}

} // namespace quorvel
