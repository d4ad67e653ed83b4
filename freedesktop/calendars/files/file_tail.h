// The second part of a large calendar file, which one thread parses while another one reads the
// file from its beginning: a file may be as large as all others together.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "freedesktop/calendars/files/calendar_file.h"
#include "freedesktop/io/file_version.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::freedesktop::calendars {

// Shared by two threads and guarded by a mutex.
class FileTail {
public:
    // The smallest file that is worth it.
    static constexpr std::size_t smallestFile = 1'000'000; // bytes

    // The context must outlive it.
    FileTail(std::string path, const ReadContext& context)
        : m_path(std::move(path))
        , m_context(context) {}

    // ---- for the thread that has nothing else to read
    // Parses from an event in the middle of the file on, unless the other thread is behind it.
    void parse();

    // ---- for the thread that reads the file from its beginning
    // How many of so many bytes from that place on it may read at once: it stops where the tail
    // begins.
    std::size_t bytesBefore(std::size_t place, std::size_t size);
    bool beginsAt(std::size_t place);
    // It will read all of the file by itself.
    void refuse();
    // Waits for the other thread's parser. Null where the file had another version for it, or could
    // not be read.
    std::unique_ptr<icalendar::IcsFileParser> take(const FileVersion& version);

private:
    std::unique_ptr<icalendar::IcsFileParser> parseFile();
    bool isWanted();
    bool begin(std::size_t place, const FileVersion& version);
    void end(std::unique_ptr<icalendar::IcsFileParser> parser);

    std::string m_path;
    const ReadContext& m_context;
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_ended;
    std::size_t m_placeOfOther = 0;     // up to which the other thread has read
    std::optional<std::size_t> m_begin; // absent: nothing is parsed here
    bool m_isRefused = false;
    bool m_hasEnded = false;
    FileVersion m_version;
    std::unique_ptr<icalendar::IcsFileParser> m_parser; // null: it failed
};

} // namespace quorvel::freedesktop::calendars
