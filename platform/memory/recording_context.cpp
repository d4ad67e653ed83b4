#include "platform/memory/recording_context.h"

#include <array>
#include <charconv>
#include <initializer_list>

namespace quorvel::platform::memory {

namespace {

std::string numberText(CGFloat value) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return {digits.data(), end};
}

std::string line(std::string text, std::initializer_list<CGFloat> numbers) {
    for (const CGFloat number : numbers) {
        text += ' ';
        text += numberText(number);
    }
    return text;
}

std::string line(std::string text, const CGRect& rect) {
    return line(std::move(text), {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
}

std::string line(std::string text, const UIColor& color) {
    return line(std::move(text), {color.red, color.green, color.blue, color.alpha});
}

} // namespace

void RecordingContext::saveGState() {
    operations.emplace_back("saveGState");
}

void RecordingContext::restoreGState() {
    operations.emplace_back("restoreGState");
}

void RecordingContext::translateCTM(CGFloat tx, CGFloat ty) {
    operations.push_back(line("translateCTM", {tx, ty}));
}

void RecordingContext::scaleCTM(CGFloat sx, CGFloat sy) {
    operations.push_back(line("scaleCTM", {sx, sy}));
}

void RecordingContext::beginPath() {
    operations.emplace_back("beginPath");
}

void RecordingContext::moveToPoint(CGFloat x, CGFloat y) {
    operations.push_back(line("moveToPoint", {x, y}));
}

void RecordingContext::addArcToPoint(CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2,
                                     CGFloat radius) {
    operations.push_back(line("addArcToPoint", {x1, y1, x2, y2, radius}));
}

void RecordingContext::closePath() {
    operations.emplace_back("closePath");
}

void RecordingContext::clip() {
    operations.emplace_back("clip");
}

void RecordingContext::clipToRect(const CGRect& rect) {
    operations.push_back(line("clipToRect", rect));
}

void RecordingContext::setLineWidth(CGFloat width) {
    operations.push_back(line("setLineWidth", {width}));
}

void RecordingContext::setStrokeColor(const UIColor& color) {
    operations.push_back(line("setStrokeColor", color));
}

void RecordingContext::setFillColor(const UIColor& color) {
    operations.push_back(line("setFillColor", color));
}

void RecordingContext::strokeEllipseInRect(const CGRect& rect) {
    operations.push_back(line("strokeEllipseInRect", rect));
}

void RecordingContext::fillEllipseInRect(const CGRect& rect) {
    operations.push_back(line("fillEllipseInRect", rect));
}

void RecordingContext::fillRect(const CGRect& rect) {
    operations.push_back(line("fillRect", rect));
}

void RecordingContext::fillHairline(const CGRect& rect) {
    operations.push_back(line("fillHairline", rect));
}

void RecordingContext::drawImage(const UIImage& image, const CGRect& rect) {
    operations.push_back(line("drawImage " + numberText(image.size().width) + "x" +
                                  numberText(image.size().height) + "@" + numberText(image.scale()),
                              rect));
}

void RecordingContext::drawText(std::string_view text, const UIFont& font, const UIColor& color,
                                const CGRect& rect) {
    std::string start = "drawText \"" + std::string(text) + "\" ";
    if (!font.familyName.empty()) {
        start += font.familyName + ":";
    }
    operations.push_back(line(line(start + numberText(font.pointSize), color), rect));
}

} // namespace quorvel::platform::memory
