#include "freedesktop/calendars/files/calendar_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/content_hash.h"
#include "freedesktop/io/regular_file.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t largestFile = std::size_t{2} << 30U; // bytes
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
    std::size_t bytesLeft() const { return m_left; }
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
    void append(FilePieces& pieces) {
        const std::size_t size = pieces.pieceSize();
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

icalendar::IcsFile parseCalendar(FilePieces& pieces, const ReadContext& context) {
    icalendar::IcsFileParser reader(context.zoneIsKnown, context.mostBytes);
    PieceBuffer buffer;
    buffer.append(pieces);
    while (!pieces.isDone()) {
        if (context.isCancelled != nullptr && *context.isCancelled) {
            pieces.fail(ECANCELED);
        }
        buffer.removePrefix(reader.read(buffer.text()));
        reader.expect(pieces.bytesLeft());
        buffer.append(pieces);
    }
    return reader.finish(buffer.text());
}

const std::string& labelOf(const CalendarFile& file, const std::string& path) {
    return file.label.empty() ? path : file.label;
}

FileContent readContent(const std::string& label, FileKind kind, const FileVersion& version,
                        FilePieces& pieces, const ReadContext& context) {
    if (kind == FileKind::calendar) {
        return {std::make_shared<icalendar::LoadedFile>(label, versionHash(version),
                                                        parseCalendar(pieces, context)),
                nullptr};
    }
    std::string bytes(largestMetadata + 1, '\0');
    bytes.resize(pieces.read(bytes.data(), bytes.size()));
    return {nullptr, std::make_shared<const std::string>(std::move(bytes))};
}

std::uint64_t hashOf(FilePieces pieces) {
    std::string buffer(pieces.pieceSize(), '\0');
    while (!pieces.isDone()) {
        pieces.read(buffer.data(), buffer.size());
    }
    return pieces.hash();
}

// The file is read from its beginning again afterwards.
bool hasSameBytes(const CalendarFile& file, const RegularFile& opened, const FilePieces& pieces) {
    const bool isSame =
        file.calendar() && file.parsed->hash != 0 && hashOf(pieces) == file.parsed->hash;
    opened.rewind();
    return isSame;
}

FileVersion listedVersion(const CalendarFile& file) {
    return file.listed ? *file.listed : FileVersion();
}

void setError(CalendarFile& file, FileError error, std::int64_t readAt) {
    const FileVersion version = listedVersion(file);
    file.parsed = {version, isSettled(version, readAt), 0, error};
}

} // namespace

bool CalendarFile::isCurrent() const {
    // A file without room is read again, as another one may have been removed.
    const bool hadRoom = parsed && (parsed->content || !parsed->content.error().isNoRoom());
    return hadRoom && parsed->isSettled && listed && parsed->version == *listed;
}

bool CalendarFile::isSettled() const {
    const bool isCurrentVersion =
        parsed && parsed->isSettled && listed && parsed->version == *listed;
    return isCurrentVersion && (parsed->content || parsed->content.error().isLasting());
}

std::shared_ptr<icalendar::LoadedFile> CalendarFile::calendar() const {
    return parsed && parsed->content ? parsed->content->calendar : nullptr;
}

void CalendarFile::setCalendar(const std::string& path, const FileVersion& version, bool isSettled,
                               icalendar::IcsFile ics) {
    const auto loaded = std::make_shared<icalendar::LoadedFile>(
        labelOf(*this, path), versionHash(version), std::move(ics));
    parsed = {version, isSettled, 0, FileContent{loaded, nullptr}};
}

void CalendarFile::leaveOutForLackOfRoom() {
    parsed = {listedVersion(*this), true, 0, FileError::noRoom()};
}

void readCalendarFile(CalendarFile& file, const std::string& path, FileKind kind,
                      const ReadContext& context) {
    const std::int64_t readAt = context.fileClock();
    const auto result = RegularFile::open(path);
    if (!result) {
        setError(file, FileError::ofSystem(result.error().value()), readAt);
        return;
    }
    const RegularFile& opened = *result;
    const std::size_t largest = kind == FileKind::calendar ? largestFile : largestMetadata;
    if (opened.size() > largest) {
        setError(file, FileError::ofSystem(EFBIG), readAt);
        return;
    }
    const bool mayBeSame = file.parsed && file.parsed->version == opened.version();
    const bool willBeSettled = isSettled(opened.version(), readAt);
    FilePieces pieces(opened, largest, !willBeSettled || mayBeSame);
    if (!mayBeSame || !hasSameBytes(file, opened, pieces)) {
        FileContent content =
            readContent(labelOf(file, path), kind, opened.version(), pieces, context);
        file.parsed = {opened.version(), false, pieces.hash(), std::move(content)};
    }
    if (pieces.error() != 0) {
        setError(file, FileError::ofSystem(pieces.error()), readAt);
        return;
    }
    const auto calendar = file.calendar();
    if (calendar && calendar->ics.isTruncated &&
        context.mostBytes < icalendar::IcsFileParser::mostBytesOfAFile) {
        file.leaveOutForLackOfRoom();
        return;
    }
    // A file that another program wrote to meanwhile is read again the next time.
    file.parsed->isSettled = willBeSettled && opened.isUnchanged();
}

} // namespace quorvel::freedesktop::calendars
