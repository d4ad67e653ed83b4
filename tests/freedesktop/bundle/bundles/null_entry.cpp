// A shared object whose entry gives nothing.
#include "platform/widget_bundle.h"

extern "C" const quorvel::platform::WidgetBundle* quorvelWidgetBundle() {
    return nullptr;
}
