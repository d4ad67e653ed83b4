#include "freedesktop/calendars/files/calendar_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/file_pieces.h"
#include "freedesktop/calendars/files/file_tail.h"
#include "freedesktop/io/regular_file.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t largestFile = std::size_t{2} << 30U; // bytes
constexpr std::size_t largestMetadata = 4096;

std::uint64_t versionHash(const FileVersion& version) {
    ContentHash hash;
    hash.add(version.device);
    hash.add(version.inode);
    hash.add(version.size);
    hash.add(version.modified);
    hash.add(version.changed);
    return hash.value();
}

bool isCancelled(const ReadContext& context) {
    return context.isCancelled != nullptr && *context.isCancelled;
}

// Whether the file is parsed to its end by that.
bool appendTail(icalendar::IcsFileParser& reader, PieceBuffer& buffer, FilePieces& pieces,
                const FileVersion& version, FileTail& tail) {
    buffer.removePrefix(reader.readLines(buffer.text()));
    const auto rest = tail.take(version);
    if (rest == nullptr || !reader.append(*rest)) {
        return false;
    }
    pieces.skipRest();
    return true;
}

// A null tail: there is none.
icalendar::IcsFile parseCalendar(FilePieces& pieces, const ReadContext& context,
                                 const FileVersion& version, FileTail* tail) {
    icalendar::IcsFileParser reader(context.zoneIsKnown, context.mostBytes);
    PieceBuffer buffer;
    buffer.append(pieces);
    while (!pieces.isDone()) {
        if (isCancelled(context)) {
            pieces.fail(ECANCELED);
        }
        buffer.removePrefix(reader.read(buffer.text()));
        reader.expect(pieces.bytesLeft());
        if (tail != nullptr && tail->beginsAt(pieces.place())) {
            if (appendTail(reader, buffer, pieces, version, *tail)) {
                break;
            }
            tail = nullptr;
        }
        const std::size_t size = pieces.pieceSize();
        buffer.append(pieces, tail != nullptr ? tail->bytesBefore(pieces.place(), size) : size);
    }
    return reader.finish(buffer.text());
}

const std::string& labelOf(const CalendarFile& file, const std::string& path) {
    return file.label.empty() ? path : file.label;
}

FileContent readContent(const std::string& label, FileKind kind, const FileVersion& version,
                        FilePieces& pieces, const ReadContext& context, FileTail* tail) {
    if (kind == FileKind::calendar) {
        return {std::make_shared<icalendar::LoadedFile>(
                    label, versionHash(version), parseCalendar(pieces, context, version, tail)),
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
                      const ReadContext& context, FileTail* tail) {
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
    const bool isHashed = !willBeSettled || mayBeSame;
    if (tail != nullptr && isHashed) { // a hash needs all bytes here
        tail->refuse();
        tail = nullptr;
    }
    FilePieces pieces(opened, largest, isHashed);
    if (!mayBeSame || !hasSameBytes(file, opened, pieces)) {
        FileContent content =
            readContent(labelOf(file, path), kind, opened.version(), pieces, context, tail);
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
