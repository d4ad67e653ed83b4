// A file's bytes, piece by piece.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "base/content_hash.h"
#include "freedesktop/io/regular_file.h"

namespace quorvel::freedesktop::calendars {

// The bytes of a file in pieces, up to the size that the file had when it was opened: what another
// program appends meanwhile is read the next time.
class FilePieces {
public:
    // That size is at most `largest`.
    FilePieces(const RegularFile& file, std::size_t largest, bool isHashed)
        : m_file(file)
        , m_isHashed(isHashed)
        , m_left(file.size() == 0 ? largest + 1 // some file systems report no size
                                  : static_cast<std::size_t>(file.size()))
        , m_largest(largest) {}

    static constexpr std::size_t largestPiece = std::size_t{256} << 10U;

    std::size_t pieceSize() const { return std::min(m_left, largestPiece); }
    // Returns fewer bytes than asked for only at the end or after an error.
    std::size_t read(char* place, std::size_t size) {
        size = isDone() ? 0 : std::min(size, m_left);
        const auto read = m_file.read(place, size);
        if (!read) {
            m_error = read.error().value();
            return 0;
        }
        m_left -= *read;
        m_total += *read;
        if (*read < size) {
            m_left = 0; // the file has become shorter
        }
        if (m_total > m_largest && m_error == 0) {
            m_error = EFBIG;
        }
        if (m_isHashed) {
            m_hash.add(std::string_view(place, *read));
        }
        return *read;
    }
    void fail(int error) { m_error = error; }
    // Those before that place are not read.
    void skipTo(std::size_t place) {
        m_file.skipTo(place);
        m_total = place;
        m_left -= std::min(m_left, place);
    }
    void skipRest() { m_left = 0; }
    std::size_t bytesLeft() const { return m_left; }
    std::size_t place() const { return m_total; }
    bool isDone() const { return m_left == 0 || m_error != 0; }
    int error() const { return m_error; } // an errno; 0: none
    std::uint64_t hash() const { return m_isHashed ? m_hash.value() : 0; }

private:
    const RegularFile& m_file;
    bool m_isHashed;
    std::size_t m_left;
    std::size_t m_largest;
    std::size_t m_total = 0;
    int m_error = 0;
    ContentHash m_hash;
};

// A piece of a file behind the rest of the piece before, which ended within a line.
class PieceBuffer {
public:
    std::string_view text() const { return std::string_view(m_bytes).substr(0, m_used); }
    void append(FilePieces& pieces) { append(pieces, pieces.pieceSize()); }
    void append(FilePieces& pieces, std::size_t size) {
        if (m_bytes.size() < m_used + size) {
            m_bytes.resize(m_used + size);
        }
        m_used += pieces.read(m_bytes.data() + m_used, size);
    }
    void removePrefix(std::size_t count) {
        m_used -= count;
        std::memmove(m_bytes.data(), m_bytes.data() + count, m_used);
    }

private:
    std::string m_bytes;
    std::size_t m_used = 0;
};

} // namespace quorvel::freedesktop::calendars
