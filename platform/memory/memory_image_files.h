// Pictures by path, and a record of the paths that were asked for.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/image_files.h"

namespace quorvel::platform::memory {

class MemoryImageFiles : public ImageFiles {
public:
    std::shared_ptr<const UIImage> imageWithContentsOfFile(std::string_view path) override {
        reads.emplace_back(path);
        const auto found = images.find(path);
        return found == images.end() ? nullptr : found->second;
    }

    std::map<std::string, std::shared_ptr<const UIImage>, std::less<>> images; // by path
    std::vector<std::string> reads;
};

} // namespace quorvel::platform::memory
