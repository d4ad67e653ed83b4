// A bundle that was built for another version of the interface; nothing but the version is right.
#include "platform/widget_bundle.h"

extern "C" const quorvel::platform::WidgetBundle* quorvelWidgetBundle() {
    static const quorvel::platform::WidgetBundle bundle{
        quorvel::platform::widgetBundleInterfaceVersion + 1,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr};
    return &bundle;
}
