#include "shells/headless/snapshot.h"

#include <algorithm>
#include <memory>

#include "platform/clock.h"
#include "platform/platform.h"
#include "platform/ui/ui_window.h"
#include "shells/headless/widget_session.h"
#include "shells/widget/appearance.h"
#include "shells/widget/notice_views.h"

namespace quorvel::headless {

using platform::CGFloat;
using platform::CGSize;
using platform::Platform;
using platform::UIWindow;

WidgetPicture pictureOfWidget(WidgetSession& session, CGFloat width,
                              const shells::Appearance& appearance,
                              const std::function<shells::CalendarState()>& calendarState) {
    shells::HostedWidget& widget = session.widget();
    const Platform& platform = session.platform();
    session.loadWithRows();
    widget.present();
    shells::applyAppearance(appearance, widget);
    session.resizeView({width, widget.preferredViewSize().height});

    const shells::CalendarState calendars = calendarState();
    UIWindow* window = widget.view().window();
    const auto notices = std::make_shared<shells::NoticeViews>(platform.textMeasurer, *window);
    notices->show(
        shells::noticesOf(widget, calendars, platform.dateServices, platform.clock.now()));
    notices->setAppearance(appearance);
    widget.view().setHidden(!calendars.hasReadable);
    const CGSize size{width, std::max(widget.view().bounds().size.height, notices->lineHeight()) +
                                 notices->problemHeight()};
    notices->layOut({{}, size});
    window->layoutIfNeeded();
    return {size,
            [window, notices](platform::GraphicsContext& context) { window->render(context); }};
}

} // namespace quorvel::headless
