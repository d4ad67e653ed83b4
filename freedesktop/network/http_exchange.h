// One request to one server, over a connection of its own.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <libsoup/soup.h>

#include "base/result.h"
#include "freedesktop/glib/handles.h"
#include "freedesktop/network/download.h"
#include "freedesktop/network/redirect.h"

namespace quorvel::freedesktop::network {

struct ExchangeOptions {
    // Whether the server may have an address of this machine or its network.
    bool allowsPrivateAddress = false;
    const DownloadRequest* request = nullptr; // outlives the exchange; never null
    bool sendsCredentials = false;
};

class HttpExchange {
public:
    HttpExchange(const WebAddress& address, const ExchangeOptions& options);
    ~HttpExchange();
    HttpExchange(const HttpExchange&) = delete;
    HttpExchange& operator=(const HttpExchange&) = delete;

    // Blocks until the head of the answer has arrived.
    Result<void, DownloadFailure> send();
    unsigned status() const;                    // of the answer
    std::string header(const char* name) const; // of the answer; empty: absent
    bool wasPrivateAddress() const { return m_wasPrivate; }
    // Blocks; 0 at the end.
    Result<std::size_t, DownloadFailure> read(std::span<char> place);

private:
    static void onNetworkEvent(SoupMessage*, GSocketClientEvent event, GIOStream* connection,
                               gpointer self);
    static gboolean onAuthenticate(SoupMessage*, SoupAuth* auth, gboolean isRetry, gpointer self);
    Result<void, DownloadFailure> checkResolvedAddresses();
    bool usesProxy() const;
    void checkConnection(GIOStream* connection);
    DownloadFailure failureOf(const ErrorHandle& error) const;

    WebAddress m_address;
    ExchangeOptions m_options;
    bool m_usesProxy = false;
    bool m_wasPrivate = false;
    bool m_isRefused = false; // for its address
    ObjectHandle<GCancellable> m_cancellable;
    ObjectHandle<SoupSession> m_session;
    ObjectHandle<SoupMessage> m_message;
    ObjectHandle<GInputStream> m_answer; // null before send()
};

} // namespace quorvel::freedesktop::network
