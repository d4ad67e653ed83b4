#include "freedesktop/rendering/unseen_rendering.h"

namespace quorvel::freedesktop {

namespace {

class NoGraphicsContexts final : public platform::GraphicsContexts {
public:
    std::unique_ptr<platform::ImageContext> beginImageContext(platform::CGSize, bool,
                                                              platform::CGFloat) override {
        return nullptr;
    }
};

} // namespace

std::unique_ptr<platform::GraphicsContexts>
UnseenRendering::makeGraphicsContexts(const platform::Screen&) {
    return std::make_unique<NoGraphicsContexts>();
}

Result<void> UnseenRendering::writeSnapshot(const std::string&, const Snapshot&) {
    return Error{"this program draws no pictures", {}, {}};
}

} // namespace quorvel::freedesktop
