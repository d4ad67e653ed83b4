#include "hosting/quorvel_view_controller.h"

#include <cstdint>

#include "agenda/quorvel_view.h"
#include "hosting/synthetic_touch.h"
#include "platform/bundle.h"
#include "platform/clock.h"
#include "platform/image_files.h"
#include "platform/ui/ui_event.h"
#include "platform/ui/ui_touch.h"
#include "platform/ui/ui_window.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr CGFloat legacyViewHeight = 70; // points

std::shared_ptr<const UIImage> pictureOf(const NSBundle* bundle, ImageFiles& imageFiles) {
    const auto path =
        bundle != nullptr ? bundle->pathForResource("Background", "png") : std::nullopt;
    return path ? imageFiles.imageWithContentsOfFile(*path) : nullptr;
}

// Only the middle point of the picture is stretched.
std::shared_ptr<const UIImage> stretchedInTheMiddle(const std::shared_ptr<const UIImage>& image) {
    if (!image) {
        return nullptr;
    }
    const auto width = static_cast<std::int64_t>(image->size().width);
    const auto height = static_cast<std::int64_t>(image->size().height);
    return image->stretchableImageWithLeftCapWidth(width / 2, height / 2);
}

void deliverTap(const std::shared_ptr<UITouch>& touch) {
    const std::shared_ptr<UIView> view = touch->view();
    if (!view) {
        return;
    }
    const auto began = Quorvel__TouchFix::initWithTouch(touch);
    view->touchesBegan(began->allTouches(), *began);
    touch->setPhase(UITouchPhase::ended);
    const auto ended = Quorvel__TouchFix::initWithTouch(touch);
    view->touchesEnded(ended->allTouches(), *ended);
}

} // namespace

QuorvelViewController::QuorvelViewController(const Platform& platform)
    : m_platform(platform)
    , m_bundle(platform.bundles.bundleForClass(className())) {}

void QuorvelViewController::loadFullView() {
    agendaView()->loadFullView();
}

std::shared_ptr<UIView> QuorvelViewController::view() {
    return agendaView();
}

const std::shared_ptr<QuorvelView>& QuorvelViewController::agendaView() {
    if (!m_view) {
        loadView();
    }
    return m_view;
}

void QuorvelViewController::loadView() {
    setView(std::make_shared<QuorvelView>(m_platform, CGRectMake(0, 0, 0, viewHeight())));
    m_view->setAutoresizingMask(UIViewAutoresizingFlexibleWidth);
}

void QuorvelViewController::loadPlaceholderView() {
    agendaView()->setBackgroundImage(
        stretchedInTheMiddle(pictureOf(m_bundle.get(), m_platform.imageFiles)));
}

void QuorvelViewController::unloadView() {
    if (m_view) {
        m_view->removeFromSuperview();
        setView(nullptr);
    }
}

CGFloat QuorvelViewController::viewHeight() const {
    return legacyViewHeight;
}

std::optional<NSURL> QuorvelViewController::launchURLForTapLocation(const CGPoint& point) {
    const std::shared_ptr<UIView> tapped = view();
    deliverTap(Quorvel__TouchFix::initWithPoint(tapped->convertPointToView(point, tapped->window()),
                                                *tapped, m_platform.clock.now()));
    return std::nullopt;
}

} // namespace quorvel
