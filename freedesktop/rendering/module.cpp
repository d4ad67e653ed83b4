#include "freedesktop/rendering/module.h"

#include <new>

#include "freedesktop/rendering/linked_rendering.h"

extern "C" [[gnu::visibility("default")]] quorvel::freedesktop::Rendering*
quorvelMakeRendering(const quorvel::freedesktop::RenderingOptions& options) {
    try {
        return new quorvel::freedesktop::LinkedRendering(options);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
