#include "freedesktop/calendars/store/file_loader.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>

#include "base/helper_thread.h"
#include "freedesktop/calendars/files/file_tail.h"
#include "freedesktop/calendars/index/stored_file.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t mostBytesInMemory = std::size_t{262} << 20U; // of all files together
// Of a file that is stored in the index: writing it takes as much memory again.
constexpr std::size_t mostStoredBytes = std::size_t{32} << 20U;

Signature keyOfFile(std::string_view realPath) {
    SignatureHash key;
    key.add(realPath);
    return key.value();
}

std::int64_t listedSize(const CalendarFile& file) {
    return file.listed ? std::max<std::int64_t>(file.listed->size, 0) : 0;
}

// What the files may take in memory: hardly any event takes more than five times its length.
std::size_t mostBytesOf(const std::vector<UnreadFile>& files) {
    std::size_t bytes = 0;
    for (const UnreadFile& unread : files) {
        bytes += 5 * static_cast<std::size_t>(listedSize(*unread.file));
    }
    return bytes;
}

// Reading the files takes longer than starting a second thread.
bool areWorthASecondThread(const std::vector<UnreadFile>& files) {
    constexpr std::int64_t fewestBytes = 400'000;
    constexpr std::int64_t costOfOpening = 2'000; // in bytes
    std::int64_t bytes = 0;
    for (const UnreadFile& unread : files) {
        bytes += listedSize(*unread.file) + costOfOpening;
    }
    return bytes > fewestBytes;
}

std::size_t indexOfLargest(const std::vector<UnreadFile>& files) {
    const auto largest =
        std::max_element(files.begin(), files.end(), [](const auto& one, const auto& other) {
            return listedSize(*one.file) < listedSize(*other.file);
        });
    return static_cast<std::size_t>(largest - files.begin());
}

bool mayHaveATail(const UnreadFile& unread) {
    return unread.kind == FileKind::calendar &&
           listedSize(*unread.file) >= static_cast<std::int64_t>(FileTail::smallestFile);
}

// The index may have any version of the file. A file that this process has read before has changed
// since, so that the index has no newer one.
std::optional<std::string> storedBytes(const UnreadFile& unread,
                                       CalendarIndex::Transaction& transaction) {
    if (unread.kind != FileKind::calendar || unread.file->parsed || !unread.file->listed) {
        return std::nullopt;
    }
    return transaction.find(IndexKind::file, keyOfFile(unread.realPath));
}

// From any thread. False where the bytes are of another version of the file.
bool useStoredBytes(const UnreadFile& unread, std::string_view bytes, std::size_t mostBytes) {
    CalendarFile& file = *unread.file;
    auto ics = fileFromBytes(bytes, *file.listed);
    if (!ics) {
        return false;
    }
    if (ics->sizeInMemory() > mostBytes) {
        file.leaveOutForLackOfRoom();
    } else {
        file.setCalendar(unread.path, *file.listed, true, *std::move(ics));
    }
    return true;
}

} // namespace

FileLoader::FileLoader(const ReadContext& context, DeferredIndex& index)
    : m_context(context)
    , m_index(index) {}

void FileLoader::load(const std::vector<UnreadFile>& unread, std::size_t bytesInMemory) {
    if (mostBytesOf(unread) + bytesInMemory > mostBytesInMemory) {
        loadOneByOne(unread, bytesInMemory);
    } else {
        loadTogether(unread);
    }
}

// The largest file comes last: its tail is parsed by the thread that has no file left, so that both
// threads end at about the same time.
void FileLoader::loadTogether(const std::vector<UnreadFile>& unread) {
    const std::size_t largest = indexOfLargest(unread);
    const auto atPlace = [&unread, largest](std::size_t place) {
        const std::size_t last = unread.size() - 1;
        return place == last ? largest : place == largest ? last : place;
    };
    std::vector<std::optional<std::string>> stored(unread.size());
    if (auto transaction = m_index.transaction()) {
        std::transform(unread.begin(), unread.end(), stored.begin(),
                       [&](const UnreadFile& one) { return storedBytes(one, *transaction); });
    }
    std::vector<const UnreadFile*> fromDisk;
    std::mutex mutex; // guards fromDisk
    std::atomic<std::size_t> next = 0;
    const bool areTwo = unread.size() > 1 && areWorthASecondThread(unread);
    std::optional<FileTail> tail; // of the largest file
    if (!unread.empty() && !stored[largest] && mayHaveATail(unread[largest])) {
        tail.emplace(unread[largest].path, m_context);
    }
    const auto loadMany = [&] {
        bool hasReadLargest = false;
        for (std::size_t place = next++; place < unread.size() && !isCancelled(); place = next++) {
            const std::size_t i = atPlace(place);
            const UnreadFile& one = unread[i];
            const auto bytes = std::exchange(stored[i], std::nullopt);
            if (!bytes || !useStoredBytes(one, *bytes, mostBytesInMemory)) {
                hasReadLargest = i == largest;
                readCalendarFile(*one.file, one.path, one.kind, m_context,
                                 hasReadLargest && tail ? &*tail : nullptr);
                const std::lock_guard lock(mutex);
                fromDisk.push_back(&one);
            }
        }
        if (tail && !hasReadLargest) {
            tail->parse();
        }
    };
    HelperThread helper;
    if (areTwo || tail) {
        helper.start(loadMany);
    }
    loadMany();
    helper.join();
    for (const UnreadFile* const one : fromDisk) {
        storeLater(*one);
    }
}

// As long as there is room for them.
void FileLoader::loadOneByOne(const std::vector<UnreadFile>& unread, std::size_t bytesInMemory) {
    auto transaction = m_index.transaction();
    ReadContext context = m_context;
    for (const UnreadFile& one : unread) {
        if (isCancelled()) {
            return;
        }
        context.mostBytes =
            std::min(icalendar::IcsFileParser::mostBytesOfAFile,
                     mostBytesInMemory - std::min(bytesInMemory, mostBytesInMemory));
        const auto bytes = transaction ? storedBytes(one, *transaction) : std::nullopt;
        if (!bytes || !useStoredBytes(one, *bytes, context.mostBytes)) {
            readCalendarFile(*one.file, one.path, one.kind, context);
            storeLater(one);
        }
        const auto calendar = one.file->calendar();
        bytesInMemory += calendar ? calendar->ics.sizeInMemory() : 0;
    }
}

void FileLoader::storeLater(const UnreadFile& unread) {
    const auto calendar = m_index.isUsed() ? unread.file->calendar() : nullptr;
    if (calendar && unread.file->parsed->isSettled &&
        calendar->ics.sizeInMemory() <= mostStoredBytes) {
        m_index.storeLater({IndexKind::file, keyOfFile(unread.realPath),
                            [version = unread.file->parsed->version, calendar] {
                                return bytesOfFile(version, calendar->ics);
                            }});
    }
}

} // namespace quorvel::freedesktop::calendars
