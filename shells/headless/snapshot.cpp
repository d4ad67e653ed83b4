#include "shells/headless/snapshot.h"

#include "platform/ui/ui_view.h"
#include "shells/headless/widget_session.h"
#include "shells/widget/appearance.h"

namespace quorvel::headless {

WidgetPicture pictureOfWidget(WidgetSession& session, platform::CGFloat width,
                              const shells::Appearance& appearance) {
    shells::HostedWidget& widget = session.widget();
    session.loadWithRows();
    widget.present();
    shells::applyAppearance(appearance, widget);
    session.resizeView({width, widget.preferredViewSize().height});
    return {widget.view().bounds().size,
            [&widget](platform::GraphicsContext& context) { widget.view().render(context); }};
}

} // namespace quorvel::headless
