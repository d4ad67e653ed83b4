// Loads the calendar files that have to be read: from the index, or else from their bytes.
#pragma once

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/calendars/files/calendar_folder.h"
#include "freedesktop/calendars/store/deferred_index.h"

namespace quorvel::freedesktop::calendars {

// Belongs to the reader's thread. A helper thread reads with it where there is much to read; each
// file then belongs to the thread that took it.
class FileLoader {
public:
    // Both outlive it.
    FileLoader(const ReadContext& context, DeferredIndex& index);

    // `bytesInMemory`: of the files that need not be read. Reading ends early where the context
    // says that it is cancelled.
    void load(const std::vector<UnreadFile>& unread, std::size_t bytesInMemory);

private:
    void loadTogether(const std::vector<UnreadFile>& unread);
    void loadOneByOne(const std::vector<UnreadFile>& unread, std::size_t bytesInMemory);
    void storeLater(const UnreadFile& unread);
    bool isCancelled() const { return m_context.isCancelled != nullptr && *m_context.isCancelled; }

    const ReadContext& m_context;
    DeferredIndex& m_index;
};

} // namespace quorvel::freedesktop::calendars
