// Picture files in any format that the desktop knows.
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

// Regular files of at most 32 MB and 32 million pixels. The pictures that were read last are
// remembered as long as their files do not change. A file that was written less than two seconds
// before it was read may change without a trace: its bytes are compared the next time.
class PixbufImageFiles final : public platform::ImageFiles {
public:
    // The stock calendar application's icon is the one in the data folder.
    explicit PixbufImageFiles(std::string dataFolder);

    // For tests. Nanoseconds since 1970.
    void setFileClock(std::function<std::int64_t()> clock) { m_fileClock = std::move(clock); }

    std::shared_ptr<const platform::UIImage>
    imageWithContentsOfFile(std::string_view path) override;

private:
    struct Remembered {
        std::string path;
        FileVersion version;
        bool isSettled = false;      // every later change shows in the version
        std::size_t contentHash = 0; // of the file's bytes
        std::shared_ptr<const platform::UIImage> image;
    };

    std::shared_ptr<const platform::UIImage>
    imageOfFile(const std::string& file, const RegularFile& opened, std::int64_t readAt);
    Remembered* rememberedAt(const std::string& path);
    void remember(Remembered picture);

    std::string m_dataFolder;
    std::function<std::int64_t()> m_fileClock = fileClock;
    std::deque<Remembered> m_remembered; // the newest first, one a path
};

} // namespace quorvel::freedesktop
