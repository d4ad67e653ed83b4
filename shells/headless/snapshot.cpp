#include "shells/headless/snapshot.h"

#include "platform/ui/ui_view.h"
#include "shells/headless/widget_session.h"

namespace quorvel::headless {

WidgetPicture pictureOfWidget(WidgetSession& session, platform::CGFloat width) {
    session.load();
    session.present();
    session.resizeView({width, session.preferredViewSize().height});
    return {session.view().bounds().size,
            [&session](platform::GraphicsContext& context) { session.view().render(context); }};
}

} // namespace quorvel::headless
