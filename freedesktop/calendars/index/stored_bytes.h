// Numbers and texts as bytes, for storage that only this machine reads.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace quorvel::freedesktop::calendars {

class ByteWriter {
public:
    // In as few bytes as its distance from 0 allows.
    template <std::integral Number>
    void number(Number value) {
        auto rest = static_cast<std::uint64_t>(value);
        if constexpr (std::is_signed_v<Number>) {
            const auto wide = static_cast<std::int64_t>(value);
            rest =
                (static_cast<std::uint64_t>(wide) << 1U) ^ static_cast<std::uint64_t>(wide >> 63U);
        }
        while (rest >= 0x80) {
            m_bytes += static_cast<char>(rest | 0x80U);
            rest >>= 7U;
        }
        m_bytes += static_cast<char>(rest);
    }
    void text(std::string_view text) {
        number(text.size());
        m_bytes.append(text);
    }
    template <typename Optional, typename Write>
    void optional(const Optional& value, Write write) {
        number(value ? 1U : 0U);
        if (value) {
            write(*value);
        }
    }
    void optionalText(const std::optional<std::string>& value) {
        optional(value, [this](const std::string& some) { text(some); });
    }
    std::string take() { return std::move(m_bytes); }

private:
    std::string m_bytes;
};

// Beyond the end everything is 0 or empty, and isWhole() is false.
class ByteReader {
public:
    explicit ByteReader(std::string_view bytes)
        : m_rest(bytes) {}

    template <std::integral Number>
    Number number() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const auto byte = static_cast<unsigned char>(next());
            value |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
            if (byte < 0x80) {
                break;
            }
        }
        if constexpr (std::is_signed_v<Number>) {
            return static_cast<Number>(static_cast<std::int64_t>(value >> 1U) ^
                                       -static_cast<std::int64_t>(value & 1U));
        } else {
            return static_cast<Number>(value);
        }
    }
    std::string_view text() {
        const auto size = number<std::uint64_t>();
        if (size > m_rest.size()) {
            m_isShort = true;
            return {};
        }
        const std::string_view result = m_rest.substr(0, static_cast<std::size_t>(size));
        m_rest.remove_prefix(result.size());
        return result;
    }
    // The number of elements that follow; each takes at least a byte.
    std::size_t count() {
        const auto count = number<std::uint64_t>();
        m_isShort = m_isShort || count > m_rest.size();
        return m_isShort ? 0 : static_cast<std::size_t>(count);
    }
    bool flag() { return number<unsigned>() != 0; }
    template <typename Read>
    auto optional(Read read) -> std::optional<decltype(read())> {
        return flag() ? std::optional(read()) : std::nullopt;
    }
    std::optional<std::string> optionalText() {
        return optional([this] { return std::string(text()); });
    }
    bool isWhole() const { return !m_isShort && m_rest.empty(); }

private:
    char next() {
        if (m_rest.empty()) {
            m_isShort = true;
            return 0;
        }
        const char byte = m_rest.front();
        m_rest.remove_prefix(1);
        return byte;
    }

    std::string_view m_rest;
    bool m_isShort = false;
};

} // namespace quorvel::freedesktop::calendars
