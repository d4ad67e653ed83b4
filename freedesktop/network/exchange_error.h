// What the user reads about an exchange with a server that failed.
#pragma once

#include <gio/gio.h>

#include "base/result.h"

namespace quorvel::freedesktop::network {

// The errors name no part of the URL.
Error exchangeError(const GError& error, GTlsCertificateFlags certificateErrors);
Error statusError(unsigned status);

} // namespace quorvel::freedesktop::network
