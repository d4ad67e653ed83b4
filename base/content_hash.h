// A fast hash of much content, for telling it from other content; the same in every process of one
// machine. No defence against those who choose the content.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quorvel {

class ContentHash {
public:
    explicit ContentHash(std::uint64_t seed = 0)
        : m_value(seed ^ 0x9E3779B97F4A7C15U) {}

    void add(std::integral auto number) { mix(static_cast<std::uint64_t>(number)); }
    // Where one text ends and the next begins counts.
    void add(std::string_view text) {
        mix(text.size());
        constexpr std::size_t wordSize = sizeof(std::uint64_t);
        while (text.size() >= wordSize) {
            mix(wordOf(text.substr(0, wordSize)));
            text.remove_prefix(wordSize);
        }
        mix(wordOf(text));
    }
    std::uint64_t value() const {
        std::uint64_t value = m_value;
        value = (value ^ (value >> 32U)) * 0xD6E8FEB86659FD93U;
        return value ^ (value >> 32U);
    }

private:
    static std::uint64_t wordOf(std::string_view bytes) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), bytes.size());
        return word;
    }
    void mix(std::uint64_t word) {
        m_value = (m_value ^ word) * 0xFF51AFD7ED558CCDU;
        m_value ^= m_value >> 29U;
    }

    std::uint64_t m_value;
};

// Of 128 bits: what has the same one is taken to be the same.
struct Signature {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    bool operator==(const Signature&) const = default;
};

class SignatureHash {
public:
    void add(const auto& value) {
        m_first.add(value);
        m_second.add(value);
    }
    void add(const Signature& signature) {
        add(signature.first);
        add(signature.second);
    }
    Signature value() const { return {m_first.value(), m_second.value()}; }

private:
    ContentHash m_first{1};
    ContentHash m_second{2};
};

} // namespace quorvel
