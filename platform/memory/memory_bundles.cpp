#include "platform/memory/memory_bundles.h"

namespace quorvel::platform::memory {

std::optional<std::string> MemoryBundle::pathForResource(std::string_view name,
                                                         std::string_view type) const {
    std::string file(name);
    if (!type.empty()) {
        file += '.';
        file += type;
    }
    const auto found = resources.find(file);
    if (found == resources.end()) {
        return std::nullopt;
    }
    return found->second;
}

std::shared_ptr<const NSBundle> MemoryBundles::bundleForClass(std::string_view className) const {
    const auto found = bundles.find(className);
    return found == bundles.end() ? nullptr : found->second;
}

} // namespace quorvel::platform::memory
