#include "freedesktop/glib/text_hash.h"

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop {

std::string secureHash(const std::string& text) {
    const TextHandle hash(g_compute_checksum_for_string(G_CHECKSUM_SHA256, text.data(),
                                                        static_cast<gssize>(text.size())));
    return hash.get();
}

} // namespace quorvel::freedesktop
