#include "hosting/synthetic_touch.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "hosting/quorvel_gs_event.h"
#include "platform/ui/ui_event.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_window.h"

// NOLINTNEXTLINE(bugprone-reserved-identifier): as in the header
namespace quorvel::Quorvel__TouchFix {

using namespace platform;

namespace {

constexpr unsigned syntheticTouchFlags = 3;
constexpr std::uint32_t touchRecordType = 3001;
constexpr std::uint32_t flagsOfEndedTouch = 0x01010180;
constexpr std::uint32_t flagsOfOtherTouch = 0x03010180;

using Words = std::array<std::uint32_t, sizeof(Quorvel__GSEvent) / sizeof(std::uint32_t)>;
using Bytes = std::array<std::byte, sizeof(Quorvel__GSEvent)>;

Quorvel__GSEvent recordOf(const UITouch& touch) {
    const CGPoint location = touch.locationInView(touch.window().get());
    Quorvel__GSEvent record;
    record.x1 = record.x2 = record.x3 = static_cast<float>(location.x);
    record.y1 = record.y2 = record.y3 = static_cast<float>(location.y);
    record.sizeX = 1;
    record.sizeY = 1;
    record.flags = touch.phase() == UITouchPhase::ended ? flagsOfEndedTouch : flagsOfOtherTouch;
    record.type = touchRecordType;
    return record;
}

// Little-endian on every machine.
Bytes bytesOf(const Quorvel__GSEvent& record) {
    const auto words = std::bit_cast<Words>(record);
    Bytes bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::byte>(words[i / 4] >> (i % 4 * 8) & 0xFFU);
    }
    return bytes;
}

} // namespace

std::shared_ptr<UITouch> initWithPoint(const CGPoint& point, UIView& view, NSDate now) {
    UITouchFields fields;
    fields.tapCount = 1;
    fields.locationInWindow = point;
    fields.previousLocationInWindow = point;
    if (UIWindow* window = view.window()) {
        fields.view = window->hitTest(point);
        fields.window = std::static_pointer_cast<UIWindow>(window->shared_from_this());
    }
    fields.phase = UITouchPhase::began;
    fields.touchFlags |= syntheticTouchFlags;
    fields.timestamp = now.timeIntervalSinceReferenceDate;
    return std::make_shared<UITouch>(std::move(fields));
}

std::unique_ptr<UITouchesEvent> initWithTouch(const std::shared_ptr<UITouch>& touch) {
    return std::make_unique<UITouchesEvent>(bytesOf(recordOf(*touch)), UITouchSet{touch});
}

} // namespace quorvel::Quorvel__TouchFix
