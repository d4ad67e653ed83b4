// What the user reads about an exchange with a server that failed.
#pragma once

#include <gio/gio.h>

#include "freedesktop/network/download.h"

namespace quorvel::freedesktop::network {

// The errors name no part of the URL.
DownloadFailure exchangeError(const GError& error, GTlsCertificateFlags certificateErrors);
DownloadFailure statusError(unsigned status);

} // namespace quorvel::freedesktop::network
