#include "freedesktop/preferences/binary_property_list_check.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/translatable_text.h"
#include "freedesktop/preferences/property_list_budget.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::string_view magic = "bplist00";
constexpr std::size_t trailerSize = 32;

class Walk {
public:
    explicit Walk(std::span<const std::byte> bytes)
        : m_bytes(bytes)
        , m_objectsEnd(bytes.size() - trailerSize) {}

    Result<std::vector<TextWithNul>> run() {
        walk();
        if (!m_problem.empty()) {
            return Error{std::move(m_problem), {}, {}};
        }
        return std::move(m_textsWithNul);
    }

private:
    struct Header {
        unsigned kind = 0;          // upper half of the marker
        std::uint64_t count = 0;    // lower half, or the number that follows
        std::uint64_t contents = 0; // where they begin
    };

    void walk() {
        const std::uint64_t trailer = m_objectsEnd;
        m_offsetSize = byteAt(trailer + 6);
        m_referenceSize = byteAt(trailer + 7);
        m_objectCount = numberAt(trailer + 8, 8);
        const std::uint64_t root = numberAt(trailer + 16, 8);
        m_offsetTable = numberAt(trailer + 24, 8);
        const bool sane = isWidth(m_offsetSize) && isWidth(m_referenceSize) &&
                          m_offsetTable >= magic.size() && m_offsetTable <= m_objectsEnd &&
                          m_objectCount <= (m_objectsEnd - m_offsetTable) / m_offsetSize;
        if (sane) {
            visit(root, 0, false);
        } else {
            damaged();
        }
    }

    static bool isWidth(std::uint64_t size) { return size >= 1 && size <= 8; }

    // The list's numbers have 64 bits; one that was checked against the bytes fits their index.
    static std::size_t asIndex(std::uint64_t checked) { return static_cast<std::size_t>(checked); }

    unsigned byteAt(std::uint64_t at) const {
        return std::to_integer<unsigned>(m_bytes[asIndex(at)]);
    }

    std::uint64_t numberAt(std::uint64_t at, std::uint64_t width) const {
        std::uint64_t value = 0;
        for (std::uint64_t i = 0; i < width; ++i) {
            value = value << 8U | byteAt(at + i);
        }
        return value;
    }

    // Objects lie between the magic and the offset table.
    bool holds(std::uint64_t at, std::uint64_t count, std::uint64_t width) const {
        return at <= m_offsetTable && count <= (m_offsetTable - at) / width;
    }

    bool fail(const char* problem) {
        if (m_problem.empty()) {
            m_problem = problem;
        }
        return false;
    }

    bool damaged() { return fail(translatable("the binary list is damaged")); }

    std::optional<Header> headerAt(std::uint64_t at) const {
        if (at < magic.size() || !holds(at, 1, 1)) {
            return std::nullopt;
        }
        const unsigned marker = byteAt(at);
        Header header{marker >> 4U, marker & 0xFU, at + 1};
        const bool counted = header.kind >= 4 && header.kind != 8;
        if (!counted || header.count != 0xF) {
            return header;
        }
        if (!holds(at + 1, 1, 1) || byteAt(at + 1) >> 4U != 1 || (byteAt(at + 1) & 0xFU) > 3) {
            return std::nullopt;
        }
        const std::uint64_t width = std::uint64_t{1} << (byteAt(at + 1) & 0xFU);
        if (!holds(at + 2, width, 1)) {
            return std::nullopt;
        }
        header.count = numberAt(at + 2, width);
        header.contents = at + 2 + width;
        return header;
    }

    bool content(const Header& header, std::uint64_t width) {
        if (!holds(header.contents, header.count, width)) {
            return damaged();
        }
        m_contentBytes += header.count * width;
        return m_contentBytes <= PropertyListBudget::contentBytes ||
               fail(translatable("its texts are too large"));
    }

    bool text(const Header& header, std::uint64_t width) {
        if (!content(header, width)) {
            return false;
        }
        for (std::uint64_t i = 0; i < header.count; ++i) {
            if (numberAt(header.contents + i * width, width) == 0) {
                m_textsWithNul.push_back(
                    {asIndex(header.contents), asIndex(header.count), asIndex(width)});
                return true;
            }
        }
        return true;
    }

    bool scalar(const Header& header) {
        switch (header.kind) {
        case 0x0:
            return header.count == 8 || header.count == 9 || damaged();
        case 0x1:
            return (header.count <= 4 && holds(header.contents, 1U << header.count, 1)) ||
                   damaged();
        case 0x2:
            return ((header.count == 2 || header.count == 3) &&
                    holds(header.contents, 1U << header.count, 1)) ||
                   damaged();
        case 0x3:
            return (header.count == 3 && holds(header.contents, 8, 1)) || damaged();
        case 0x4:
            return content(header, 1);
        case 0x5:
            return text(header, 1);
        case 0x6:
            return text(header, 2);
        case 0x8:
            return (header.count < 8 && holds(header.contents, header.count + 1, 1)) || damaged();
        default:
            return damaged();
        }
    }

    bool children(const Header& header, std::size_t depth) {
        const bool isDictionary = header.kind == 0xD;
        const std::uint64_t width = m_referenceSize * (isDictionary ? 2 : 1);
        if (!holds(header.contents, header.count, width)) {
            return damaged();
        }
        const std::uint64_t references = header.count * (isDictionary ? 2 : 1);
        for (std::uint64_t i = 0; i < references; ++i) {
            const std::uint64_t child =
                numberAt(header.contents + i * m_referenceSize, m_referenceSize);
            if (!visit(child, depth + 1, isDictionary && i < header.count)) {
                return false;
            }
        }
        return true;
    }

    // Counts a shared object each time, because the library copies it each time.
    bool visit(std::uint64_t object, std::size_t depth, bool isKey) {
        if (depth > PropertyListBudget::depth) {
            return fail(translatable("it is nested too deep"));
        }
        if (++m_objects > PropertyListBudget::objects) {
            return fail(translatable("it holds too many objects"));
        }
        if (object >= m_objectCount) {
            return damaged();
        }
        const auto header = headerAt(numberAt(m_offsetTable + object * m_offsetSize, m_offsetSize));
        if (!header) {
            return damaged();
        }
        const bool isText = header->kind == 0x5 || header->kind == 0x6;
        if (isKey && !isText) {
            return damaged();
        }
        const bool isContainer = header->kind == 0xA || header->kind == 0xD;
        return isContainer ? children(*header, depth) : scalar(*header);
    }

    std::span<const std::byte> m_bytes;
    std::uint64_t m_objectsEnd;
    std::uint64_t m_offsetSize = 0;
    std::uint64_t m_referenceSize = 0;
    std::uint64_t m_objectCount = 0;
    std::uint64_t m_offsetTable = 0;
    std::size_t m_objects = 0;
    std::uint64_t m_contentBytes = 0;
    std::string m_problem;
    std::vector<TextWithNul> m_textsWithNul;
};

} // namespace

bool looksLikeBinaryPropertyList(std::span<const std::byte> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return text.substr(0, 6) == magic.substr(0, 6);
}

Result<std::vector<TextWithNul>> checkBinaryPropertyList(std::span<const std::byte> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.substr(0, magic.size()) != magic) {
        return Error{translatable("its binary format is of an unknown version"), {}, {}};
    }
    if (bytes.size() < magic.size() + trailerSize) {
        return Error{translatable("the binary list is damaged"), {}, {}};
    }
    return Walk(bytes).run();
}

void replaceNuls(const std::vector<TextWithNul>& texts, std::span<std::byte> bytes) {
    constexpr std::array<std::byte, 1> narrow{std::byte{0xFF}};
    constexpr std::array<std::byte, 2> wide{std::byte{0xFF}, std::byte{0xFD}};
    for (const TextWithNul& text : texts) {
        const std::span<const std::byte> other =
            text.width == wide.size() ? std::span<const std::byte>(wide) : narrow;
        for (std::size_t i = 0; i < text.count; ++i) {
            const auto character = bytes.subspan(text.at + i * text.width, text.width);
            if (std::all_of(character.begin(), character.end(),
                            [](std::byte byte) { return byte == std::byte{0}; })) {
                std::copy(other.begin(), other.end(), character.begin());
            }
        }
    }
}

} // namespace quorvel::freedesktop
