// Remembers the offsets that a time zone was asked for last. The rows of a list ask for those of
// the same few days, and GLib goes through all changes of the zone for each.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

namespace quorvel::freedesktop {

// Time is divided into blocks of twelve days, of which 256, eight years, are remembered at most.
// Any number of threads may read and write.
class RecentOffsets {
public:
    static std::int64_t blockOf(std::int64_t instant) { return instant >> blockBits; }
    static std::int64_t firstInstantOf(std::int64_t block) {
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(block) << blockBits);
    }
    static std::int64_t lastInstantOf(std::int64_t block) {
        return firstInstantOf(block) | ((std::int64_t{1} << blockBits) - 1);
    }

    // The offset of the whole block in seconds. Absent: not remembered.
    std::optional<int> find(std::int64_t block) const {
        const std::uint64_t entry = m_entries[slotOf(block)].load(std::memory_order_relaxed);
        return entry != 0 && entry >> offsetBits == keyOf(block)
                   ? std::optional(static_cast<int>(entry & offsetMask) - largestOffset)
                   : std::nullopt;
    }
    // `offset` has less than six days.
    void remember(std::int64_t block, int offset) {
        const auto bits = static_cast<std::uint64_t>(std::int64_t{offset} + largestOffset);
        m_entries[slotOf(block)].store(keyOf(block) << offsetBits | bits,
                                       std::memory_order_relaxed);
    }

private:
    static constexpr int blockBits = 20;
    static constexpr int offsetBits = 20;
    static constexpr std::uint64_t offsetMask = (std::uint64_t{1} << offsetBits) - 1;
    static constexpr int largestOffset = 1 << (offsetBits - 1);
    static constexpr std::size_t slots = 256;

    static std::size_t slotOf(std::int64_t block) {
        return static_cast<std::uint64_t>(block) % slots;
    }
    // Without the bits that all instants have in common, their sign.
    static std::uint64_t keyOf(std::int64_t block) {
        return static_cast<std::uint64_t>(block) & (~std::uint64_t{0} >> offsetBits);
    }

    std::array<std::atomic<std::uint64_t>, slots> m_entries{}; // 0: empty, as no offset is stored
};

} // namespace quorvel::freedesktop
