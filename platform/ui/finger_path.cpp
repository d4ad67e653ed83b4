#include "platform/ui/finger_path.h"

#include <algorithm>
#include <cmath>

namespace quorvel::platform {

namespace {

constexpr CGFloat slop = 10;         // points
constexpr double samplingTime = 0.1; // seconds
constexpr CGFloat fastest = 20000;   // points per second

} // namespace

FingerPath::FingerPath(const CGPoint& start, double time)
    : m_start(start)
    , m_samples{{start, time}} {}

void FingerPath::add(const CGPoint& location, double time) {
    if (time > m_samples.back().time) {
        m_samples.push_back({location, time});
    } else {
        m_samples.back().location = location;
    }
    while (m_samples.front().time < time - samplingTime) {
        m_samples.pop_front();
    }
    if (!m_axis) {
        decideAxis(location);
    }
    m_translation = {location.x - m_start.x, location.y - m_start.y};
}

void FingerPath::decideAxis(const CGPoint& location) {
    const CGFloat across = location.x - m_start.x;
    const CGFloat down = location.y - m_start.y;
    if (!(std::max(std::abs(across), std::abs(down)) > slop)) {
        return;
    }
    if (std::abs(across) > std::abs(down)) {
        m_axis = DragAxis::horizontal;
        m_start.x += std::copysign(slop, across);
    } else {
        m_axis = DragAxis::vertical;
        m_start.y += std::copysign(slop, down);
    }
}

CGPoint FingerPath::velocity() const {
    const Sample& first = m_samples.front();
    const Sample& last = m_samples.back();
    const double seconds = last.time - first.time;
    if (!(seconds > 0)) {
        return {};
    }
    return {std::clamp((last.location.x - first.location.x) / seconds, -fastest, fastest),
            std::clamp((last.location.y - first.location.y) / seconds, -fastest, fastest)};
}

} // namespace quorvel::platform
