// Reads image files in every format that the desktop supports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "freedesktop/io/file_version.h"
#include "freedesktop/io/regular_file.h"
#include "platform/image_files.h"

namespace quorvel::freedesktop {

// 2 for a name that ends in "@2x" before its extension, 3 for "@3x", else 1.
platform::CGFloat scaleOfFileName(std::string_view path);

// Reads regular files of at most 32 MB and 32 million pixels. Caches the last images until their
// files change. A file that was modified less than two seconds before it was read may change again
// with the same time stamp, so its bytes are compared the next time.
class PixbufImageFiles final : public platform::ImageFiles {
public:
    // The data folder contains the stock calendar application's icon.
    explicit PixbufImageFiles(std::string dataFolder);

    // For tests: returns nanoseconds since 1970.
    void setFileClock(std::function<std::int64_t()> clock) { m_fileClock = std::move(clock); }

    std::shared_ptr<const platform::UIImage>
    imageWithContentsOfFile(std::string_view path) override;

private:
    struct CachedImage {
        std::string path;
        FileVersion version;
        bool isSettled = false;      // every later change changes the version
        std::size_t contentHash = 0; // of the file's bytes
        std::shared_ptr<const platform::UIImage> image;
    };

    std::shared_ptr<const platform::UIImage>
    imageOfFile(const std::string& file, const RegularFile& opened, std::int64_t readAt);
    CachedImage* cachedAt(const std::string& path); // null: none
    void cache(CachedImage image);

    std::string m_dataFolder;
    std::function<std::int64_t()> m_fileClock = fileClock;
    std::deque<CachedImage> m_cache; // the newest first, one per path
};

} // namespace quorvel::freedesktop
