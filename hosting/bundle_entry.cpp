// The one symbol of the bundle's shared object.
#include "hosting/bundle_classes.h"

extern "C" [[gnu::visibility("default")]] const quorvel::platform::WidgetBundle*
quorvelWidgetBundle() {
    return &quorvel::widgetBundle();
}
