#include "freedesktop/calendars/files/calendar_file.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <utility>

#include "base/content_hash.h"
#include "freedesktop/io/regular_file.h"
#include "icalendar/model/ics_file_reader.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t largestFile = std::size_t{2} << 30U;
constexpr std::size_t largestMetadata = 4096;
constexpr std::size_t largestPiece = std::size_t{256} << 10U;

std::uint64_t versionHash(const FileVersion& version) {
    ContentHash hash;
    hash.add(version.device);
    hash.add(version.inode);
    hash.add(version.size);
    hash.add(version.modified);
    hash.add(version.changed);
    return hash.value();
}

// The bytes of a file, one full piece after the other, up to the size that it had at first: what is
// written behind that meanwhile is for the next reading.
class FilePieces {
public:
    // Without a hash it is 0, which no file's is taken for.
    FilePieces(const RegularFile& file, std::size_t largest, bool isHashed)
        : m_file(file)
        , m_isHashed(isHashed)
        , m_left(file.size() == 0 ? largest + 1 : file.size()) // some file systems report no size
        , m_largest(largest) {}

    std::size_t pieceSize() const { return std::min(m_left, largestPiece); }
    // Fills the place unless the file ends before.
    std::size_t read(char* place, std::size_t size) {
        size = isDone() ? 0 : std::min(size, m_left);
        const ReadResult result = m_file.read(place, size);
        m_left -= result.size;
        m_total += result.size;
        if (result.error != 0) {
            m_error = result.error;
        } else if (result.size < size) {
            m_left = 0; // the file has become shorter
        }
        if (m_total > m_largest && m_error == 0) {
            m_error = EFBIG;
        }
        if (m_isHashed) {
            m_hash.add(std::string_view(place, result.size));
        }
        return result.size;
    }
    void fail(int error) { m_error = error; }
    std::size_t bytesLeft() const { return m_left; }
    bool isDone() const { return m_left == 0 || m_error != 0; }
    int error() const { return m_error; }
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

// What was left over stands before each new piece.
class PieceBuffer {
public:
    std::string_view text() const { return std::string_view(m_bytes).substr(0, m_used); }
    void append(FilePieces& pieces) {
        const std::size_t size = pieces.pieceSize();
        if (m_bytes.size() < m_used + size) {
            m_bytes.resize(m_used + size);
        }
        m_used += pieces.read(m_bytes.data() + m_used, size);
    }
    void take(std::size_t count) {
        m_used -= count;
        std::memmove(m_bytes.data(), m_bytes.data() + count, m_used);
    }

private:
    std::string m_bytes;
    std::size_t m_used = 0;
};

icalendar::IcsFile readCalendar(FilePieces& pieces, const ReadContext& context) {
    icalendar::IcsFileReader reader(context.zoneIsKnown, context.mostBytes);
    PieceBuffer buffer;
    buffer.append(pieces);
    while (!pieces.isDone()) {
        if (context.isCancelled != nullptr && *context.isCancelled) {
            pieces.fail(ECANCELED);
        }
        buffer.take(reader.read(buffer.text()));
        reader.expect(pieces.bytesLeft());
        buffer.append(pieces);
    }
    return reader.finish(buffer.text());
}

std::uint64_t hashOf(FilePieces pieces) {
    std::string place(pieces.pieceSize(), '\0');
    while (!pieces.isDone()) {
        pieces.read(place.data(), place.size());
    }
    return pieces.hash();
}

// The file is at its beginning again afterwards.
bool hasSameBytes(const CalendarFile& file, const RegularFile& opened, const FilePieces& pieces) {
    const bool isSame = file.loaded && file.hash != 0 && hashOf(pieces) == file.hash;
    opened.rewind();
    return isSame;
}

void setError(CalendarFile& file, int error, std::int64_t readAt) {
    file.wasRead = true;
    file.error = error;
    file.version = file.seen;
    file.isSettled = isSettled(file.version, readAt);
    file.loaded = nullptr;
    file.metadata.clear();
}

void readContent(CalendarFile& file, const std::string& path, FileKind kind, FilePieces& pieces,
                 const ReadContext& context) {
    if (kind == FileKind::calendar) {
        file.setLoaded(path, file.version, readCalendar(pieces, context));
    } else {
        file.metadata.resize(largestMetadata + 1);
        file.metadata.resize(pieces.read(file.metadata.data(), file.metadata.size()));
    }
    file.hash = pieces.hash();
}

} // namespace

bool CalendarFile::isCurrent() const {
    return wasRead && isSettled && version == seen && seenError == 0 && error != noRoom;
}

bool CalendarFile::isErrorLasting() const {
    return error == EACCES || error == EFBIG || error == noRoom;
}

void CalendarFile::setLoaded(const std::string& path, const FileVersion& readVersion,
                             icalendar::IcsFile ics) {
    wasRead = true;
    error = 0;
    version = readVersion;
    loaded =
        std::make_shared<icalendar::LoadedFile>(path, versionHash(readVersion), std::move(ics));
}

void CalendarFile::leaveOut() {
    wasRead = true;
    error = noRoom;
    version = seen;
    isSettled = true;
    loaded = nullptr;
    metadata.clear();
}

void readCalendarFile(CalendarFile& file, const std::string& path, FileKind kind,
                      const ReadContext& context) {
    const std::int64_t readAt = context.fileClock();
    const RegularFile opened(path);
    if (!opened.isOpen()) {
        setError(file, opened.error(), readAt);
        return;
    }
    const std::size_t largest = kind == FileKind::calendar ? largestFile : largestMetadata;
    if (opened.size() > largest) {
        setError(file, EFBIG, readAt);
        return;
    }
    const bool mayBeSame = file.wasRead && file.version == opened.version();
    file.version = opened.version();
    file.wasRead = true;
    const bool willBeSettled = isSettled(file.version, readAt);
    FilePieces pieces(opened, largest, !willBeSettled || mayBeSame);
    if (!mayBeSame || !hasSameBytes(file, opened, pieces)) {
        file.error = 0;
        readContent(file, path, kind, pieces, context);
    }
    if (pieces.error() != 0) {
        setError(file, pieces.error(), readAt);
        return;
    }
    if (file.loaded && file.loaded->ics.isCut &&
        context.mostBytes < icalendar::IcsFileReader::mostBytesOfAFile) {
        file.leaveOut();
        return;
    }
    // A file that was written to meanwhile is read once more the next time.
    file.isSettled = willBeSettled && opened.isUnchanged();
}

} // namespace quorvel::freedesktop::calendars
