// Downloads a calendar from a server that may be hostile.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop::network {

struct Credentials {
    std::string user;
    std::string password;
};

struct DownloadRequest {
    std::string url;
    std::string entityTag;    // of what is known; empty: nothing is known
    std::string lastModified; // likewise
    // Called at most once, if the server asks for a password. Null: there is none.
    std::function<std::optional<Credentials>()> credentials;
    std::string certificateAuthorities;  // a file in PEM format; empty: those of the system
    std::uint64_t mostBytes = 64 << 20U; // after decompression
    unsigned longestSilence = 30;        // seconds without a byte from the server
};

struct Download {
    bool isUnchanged = false; // the server has what is known; nothing was received
    std::string entityTag;
    std::string lastModified;
};

struct DownloadFailure {
    TranslatableText what;
    TranslatableText toDo; // may be empty
    bool mayPass = false;  // the same request may succeed later: the server or the network is down
};

// A failure ends the download with it.
using Receive = std::function<Result<void, TranslatableText>(std::string_view)>;

// Blocks. Passes the content on in pieces. Follows redirections, but never to another scheme than
// https, nor to a private address of another host. Certificates are always checked. The total time
// is not bounded. Failures are about "the server" and name no part of the URL.
Result<Download, DownloadFailure> download(const DownloadRequest& request, const Receive& receive);

} // namespace quorvel::freedesktop::network
