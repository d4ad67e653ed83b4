// The bundle's table of classes.
#pragma once

#include "platform/widget_bundle.h"

namespace quorvel {

const platform::WidgetBundle& widgetBundle();

} // namespace quorvel
