// Where a server's redirection may lead.
#pragma once

#include <string>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop::network {

inline constexpr int mostRedirects = 5;

struct WebAddress {
    std::string url;
    std::string scheme; // "https" or "http"
    std::string host;   // in lower case
    int port = 0;
    // The same server, to which credentials may be sent.
    bool hasSameOrigin(const WebAddress& other) const {
        return scheme == other.scheme && host == other.host && port == other.port;
    }
};

// Of an https or http URL with a host and without name and password.
Result<WebAddress, TranslatableText> parseWebAddress(const std::string& url);

// The address that the value of a "Location" header means: https, or the same host again by http.
// Never names the target in an error, as it may be a secret.
Result<WebAddress, TranslatableText> redirectTarget(const WebAddress& from,
                                                    const std::string& location);

} // namespace quorvel::freedesktop::network
