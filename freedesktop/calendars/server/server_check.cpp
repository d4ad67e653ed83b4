#include "freedesktop/calendars/server/server_check.h"

#include "freedesktop/glib/session_bus_address.h"

namespace quorvel::freedesktop::eds {

Result<void, TranslatableText> checkDataServer() {
    if (!mayHaveSessionBus()) {
        return TranslatableText(translatable("there is no session bus"));
    }
    return {};
}

} // namespace quorvel::freedesktop::eds
