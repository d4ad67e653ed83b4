#include "freedesktop/desktop/module.h"

#include <new>

#include "freedesktop/desktop/linked_desktop.h"

extern "C" [[gnu::visibility("default")]] quorvel::freedesktop::Desktop* quorvelMakeDesktop() {
    return new (std::nothrow) quorvel::freedesktop::LinkedDesktop;
}
