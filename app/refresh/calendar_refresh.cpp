#include "app/refresh/calendar_refresh.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "app/refresh/received_calendar.h"
#include "freedesktop/calendars/subscriptions/copy_status.h"
#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/io/regular_file.h"
#include "freedesktop/network/credentials.h"

namespace quorvel::app {

using freedesktop::CopyState;
using freedesktop::FileDescriptor;
using freedesktop::SubscriptionCache;
using freedesktop::systemSeconds;
using freedesktop::network::DownloadFailure;
namespace network = freedesktop::network;

namespace {

constexpr std::uint64_t mostBytes = 64 << 20U;

std::string downloadFile(const SubscriptionCache& cache, const std::string& url) {
    return cache.folderOf(url) + "/download";
}

// Holds the folder of one copy while its descriptor is open.
class CopyLock {
public:
    explicit CopyLock(const std::string& folder)
        : m_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        m_hasWaited = ::flock(m_folder.get(), LOCK_EX | LOCK_NB) != 0;
        if (m_hasWaited) {
            while (::flock(m_folder.get(), LOCK_EX) != 0 && errno == EINTR) {
            }
        }
    }
    // Another process has refreshed the copy meanwhile.
    bool hasWaited() const { return m_hasWaited; }

private:
    FileDescriptor m_folder;
    bool m_hasWaited = false;
};

// Whether the answer to a conditional request would be about this file.
bool isIntact(const std::string& file, const CopyState& state) {
    std::error_code error;
    return std::filesystem::file_size(file, error) == state.size && !error && state.size > 0;
}

bool haveSameBytes(const std::string& first, const std::string& second) {
    const auto one = freedesktop::readRegularFile(first, mostBytes);
    const auto other = freedesktop::readRegularFile(second, mostBytes);
    return one && other && *one && *other && **one == **other;
}

network::DownloadRequest requestOf(const std::string& url, const RefreshOptions& options,
                                   const CopyState& state, bool isConditional) {
    network::DownloadRequest request;
    request.url = url;
    if (isConditional) {
        request.entityTag = state.entityTag;
        request.lastModified = state.lastModified;
    }
    request.credentials = [url] { return network::storedCredentials(url); };
    request.certificateAuthorities = options.certificateAuthorities;
    request.mostBytes = mostBytes;
    request.longestSilence = static_cast<unsigned>(std::max(std::ceil(options.timeout), 1.0));
    return request;
}

// The copy stays the same file where its content does, so that nobody parses it again.
Result<void, ReceiveError> replaceCopy(const std::string& received, const std::string& copy) {
    if (haveSameBytes(received, copy)) {
        ::unlink(received.c_str());
        return {};
    }
    if (::rename(received.c_str(), copy.c_str()) != 0) {
        return ReceiveError{
            {translatable("the file '{1}' cannot be written ({2})"),
             {TranslatableText::verbatim(copy), TranslatableText(std::strerror(errno))}},
            {}};
    }
    return {};
}

DownloadFailure lasting(const ReceiveError& error) {
    return {error.what, error.toDo, false};
}

// The new state of the copy.
Result<CopyState, DownloadFailure> fetch(const SubscriptionCache& cache, const std::string& url,
                                         const RefreshOptions& options, const CopyState& state) {
    const std::string copy = cache.calendarFile(url);
    auto received = ReceivedCalendar::create(downloadFile(cache, url));
    if (!received) {
        return lasting(received.error());
    }
    const auto result = network::download(
        requestOf(url, options, state, isIntact(copy, state)),
        [&](std::string_view piece) -> Result<void, TranslatableText> {
            const auto written = received->receive(piece);
            return written ? Result<void, TranslatableText>() : written.error().what;
        });
    if (!result) {
        return result.error();
    }
    CopyState fetched = state;
    if (!result->isUnchanged) {
        auto stored = received->finish();
        if (stored) {
            stored = replaceCopy(downloadFile(cache, url), copy);
        }
        if (!stored) {
            return lasting(stored.error());
        }
        fetched.calendarName = received->calendarName();
        fetched.size = received->size();
        fetched.entityTag = result->entityTag;
        fetched.lastModified = result->lastModified;
    }
    fetched.triedAt = fetched.confirmedAt = systemSeconds();
    fetched.error = {};
    fetched.toDo = {};
    fetched.mayPass = false;
    return fetched;
}

} // namespace

Result<RefreshOutcome> refreshCalendar(const std::string& url, const RefreshOptions& options) {
    const SubscriptionCache cache(options.cacheFolder);
    const std::int64_t startedAt = systemSeconds();
    if (const Result<void> made = cache.makeFolder(url); !made) {
        return made.error();
    }
    const CopyLock lock(cache.folderOf(url));
    const CopyState state = cache.readState(url);
    if (lock.hasWaited() && state.triedAt >= startedAt) {
        return state.error.empty() ? RefreshOutcome::current : RefreshOutcome::failed;
    }
    const auto fetched = fetch(cache, url, options, state);
    ::unlink(downloadFile(cache, url).c_str());
    if (!fetched) {
        const Result<void> recorded = recordFailure(url, options, fetched.error());
        return recorded ? Result<RefreshOutcome>(RefreshOutcome::failed) : recorded.error();
    }
    const Result<void> written = cache.writeState(url, *fetched);
    return written ? Result<RefreshOutcome>(RefreshOutcome::current) : written.error();
}

Result<void> recordFailure(const std::string& url, const RefreshOptions& options,
                           const DownloadFailure& failure) {
    const SubscriptionCache cache(options.cacheFolder);
    ::unlink(downloadFile(cache, url).c_str());
    CopyState state = cache.readState(url);
    state.triedAt = systemSeconds();
    state.error = failure.what;
    state.toDo = failure.toDo;
    state.mayPass = failure.mayPass;
    return cache.writeState(url, state);
}

} // namespace quorvel::app
