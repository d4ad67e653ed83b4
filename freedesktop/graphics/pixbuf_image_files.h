// Picture files in any format that the desktop knows.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "platform/image_files.h"

namespace quorvel::freedesktop {

// 2 for a name that ends in "@2x" before its extension, 3 for "@3x", else 1.
platform::CGFloat scaleOfFileName(std::string_view path);

// Regular files of at most 32 MB and 32 million pixels. The pictures that were read last are
// remembered as long as their files do not change.
class PixbufImageFiles final : public platform::ImageFiles {
public:
    // The stock calendar application's icon is the one in the data folder.
    explicit PixbufImageFiles(std::string dataFolder);

    std::shared_ptr<const platform::UIImage>
    imageWithContentsOfFile(std::string_view path) override;

private:
    // What tells a file from the one that stood there before.
    struct FileStamp {
        std::string path;
        unsigned long device = 0;
        unsigned long number = 0;
        long long size = 0;
        long long modifiedSeconds = 0;
        long long modifiedNanoseconds = 0;
        bool operator==(const FileStamp&) const = default;
    };
    struct Remembered {
        FileStamp stamp;
        std::shared_ptr<const platform::UIImage> image;
    };

    std::string m_dataFolder;
    std::deque<Remembered> m_remembered; // the newest first
};

} // namespace quorvel::freedesktop
