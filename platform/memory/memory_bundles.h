// Bundles that are lists of names.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/bundle.h"

namespace quorvel::platform::memory {

class MemoryBundle : public NSBundle {
public:
    std::string bundlePath() const override { return path; }
    std::optional<std::string> pathForResource(std::string_view name,
                                               std::string_view type) const override;

    std::string path;
    std::map<std::string, std::string, std::less<>> resources; // "name.type" to path
};

class MemoryBundles : public Bundles {
public:
    std::shared_ptr<const NSBundle> bundleForClass(std::string_view className) const override;

    std::map<std::string, std::shared_ptr<const NSBundle>, std::less<>> bundles; // by class name
};

} // namespace quorvel::platform::memory
