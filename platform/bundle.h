// The bundle that holds a class, and its resources.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quorvel::platform {

class NSBundle {
public:
    virtual ~NSBundle() = default;
    virtual std::string bundlePath() const = 0;
    // The path of a resource, by name and extension, the closest to the screen's scale; absent
    // where the bundle has none.
    virtual std::optional<std::string> pathForResource(std::string_view name,
                                                       std::string_view type) const = 0;
};

class Bundles {
public:
    virtual ~Bundles() = default;
    // Null where no loaded bundle holds the class.
    virtual std::shared_ptr<const NSBundle> bundleForClass(std::string_view className) const = 0;
};

} // namespace quorvel::platform
