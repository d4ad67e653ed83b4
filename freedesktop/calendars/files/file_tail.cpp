#include "freedesktop/calendars/files/file_tail.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "freedesktop/calendars/files/file_pieces.h"
#include "freedesktop/io/regular_file.h"

namespace quorvel::freedesktop::calendars {
namespace {

// The first event behind that place, at the beginning of a line; absent where none is near.
std::optional<std::size_t> findTail(const RegularFile& file, std::size_t place) {
    constexpr std::size_t farthest = std::size_t{64} << 10U;
    std::string bytes(farthest, '\0');
    file.skipTo(place);
    const auto count = file.read(bytes.data(), bytes.size());
    const std::string_view text = std::string_view(bytes).substr(0, count ? *count : 0);
    for (const std::string_view line : {"\nBEGIN:VEVENT\r\n", "\nBEGIN:VEVENT\n"}) {
        if (const std::size_t found = text.find(line); found != std::string_view::npos) {
            return place + found + 1;
        }
    }
    return std::nullopt;
}

} // namespace

void FileTail::parse() {
    std::unique_ptr<icalendar::IcsFileParser> parser;
    try {
        parser = parseFile();
    } catch (...) {
        end(nullptr); // the other thread may wait
        throw;
    }
    end(std::move(parser));
}

// Null where it cannot be done.
std::unique_ptr<icalendar::IcsFileParser> FileTail::parseFile() {
    const auto opened = RegularFile::open(m_path);
    if (!opened || opened->size() < smallestFile) {
        return nullptr;
    }
    const auto size = static_cast<std::size_t>(opened->size());
    const auto place = findTail(*opened, size / 2);
    if (!place || !begin(*place, opened->version())) {
        return nullptr;
    }
    FilePieces pieces(*opened, size, false);
    pieces.skipTo(*place);
    auto parser =
        std::make_unique<icalendar::IcsFileParser>(m_context.zoneIsKnown, m_context.mostBytes);
    parser->beginWithinCalendar();
    PieceBuffer buffer;
    buffer.append(pieces);
    while (!pieces.isDone()) {
        if (!isWanted()) {
            return nullptr;
        }
        buffer.removePrefix(parser->read(buffer.text()));
        parser->expect(pieces.bytesLeft());
        buffer.append(pieces);
    }
    parser->readLines(buffer.text());
    return pieces.error() == 0 && pieces.place() == size ? std::move(parser) : nullptr;
}

bool FileTail::isWanted() {
    const std::lock_guard lock(m_mutex);
    return !m_isRefused && (m_context.isCancelled == nullptr || !*m_context.isCancelled);
}

// False where the other thread has passed that place.
bool FileTail::begin(std::size_t place, const FileVersion& version) {
    const std::lock_guard lock(m_mutex);
    if (m_isRefused || m_placeOfOther > place) {
        return false;
    }
    m_begin = place;
    m_version = version;
    return true;
}

void FileTail::end(std::unique_ptr<icalendar::IcsFileParser> parser) {
    const std::lock_guard lock(m_mutex);
    m_parser = std::move(parser);
    m_hasEnded = true;
    m_ended.notify_one();
}

std::size_t FileTail::bytesBefore(std::size_t place, std::size_t size) {
    const std::lock_guard lock(m_mutex);
    const std::size_t end = m_begin ? std::min(place + size, *m_begin) : place + size;
    m_placeOfOther = end;
    return end - place;
}

void FileTail::refuse() {
    const std::lock_guard lock(m_mutex);
    m_isRefused = true;
}

bool FileTail::beginsAt(std::size_t place) {
    const std::lock_guard lock(m_mutex);
    return m_begin == place;
}

std::unique_ptr<icalendar::IcsFileParser> FileTail::take(const FileVersion& version) {
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_hasEnded; });
    return m_version == version ? std::move(m_parser) : nullptr;
}

} // namespace quorvel::freedesktop::calendars
