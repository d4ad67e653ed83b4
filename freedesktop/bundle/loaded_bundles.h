// The loaded bundles of the process, found by their classes.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "freedesktop/bundle/loaded_bundle.h"
#include "platform/bundle.h"

namespace quorvel::freedesktop {

class LoadedBundles final : public platform::Bundles {
public:
    void add(std::shared_ptr<const LoadedBundle> bundle) { m_bundles.push_back(std::move(bundle)); }
    std::shared_ptr<const platform::NSBundle>
    bundleForClass(std::string_view className) const override {
        for (const auto& bundle : m_bundles) {
            if (bundle->hasClass(className)) {
                return bundle;
            }
        }
        return nullptr;
    }

private:
    std::vector<std::shared_ptr<const LoadedBundle>> m_bundles;
};

} // namespace quorvel::freedesktop
