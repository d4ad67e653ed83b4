#include "freedesktop/network/http_exchange.h"

#include <utility>

#include "freedesktop/network/address_scope.h"
#include "freedesktop/network/exchange_error.h"

namespace quorvel::freedesktop::network {

namespace {

constexpr const char* userAgent = "quorvel";
constexpr const char* acceptedTypes = "text/calendar, text/plain;q=0.5, */*;q=0.1";

bool isPublic(GInetAddress* address) {
    return isPublicAddress(
        {g_inet_address_to_bytes(address), g_inet_address_get_native_size(address)});
}

DownloadFailure privateAddress() {
    return {translatable("the server redirects to another host with a private address"), {}, false};
}

ObjectHandle<SoupSession> makeSession(unsigned longestSilence) {
    return ObjectHandle<SoupSession>(
        soup_session_new_with_options("timeout", longestSilence, "user-agent", userAgent, nullptr));
}

Result<ObjectHandle<GTlsDatabase>, TranslatableText> authoritiesIn(const std::string& file) {
    GError* error = nullptr;
    ObjectHandle<GTlsDatabase> database(g_tls_file_database_new(file.c_str(), &error));
    const ErrorHandle owned(error);
    if (!database) {
        return TranslatableText(translatable("the certificate authorities in '{1}' cannot be read"),
                                {TranslatableText::verbatim(file)});
    }
    return database;
}

struct AddressesFree {
    void operator()(GList* addresses) const { g_resolver_free_addresses(addresses); }
};

} // namespace

HttpExchange::HttpExchange(const WebAddress& address, const ExchangeOptions& options)
    : m_address(address)
    , m_options(options)
    , m_cancellable(g_cancellable_new())
    , m_session(makeSession(options.request->longestSilence))
    , m_message(soup_message_new("GET", address.url.c_str())) {
    if (!m_message) {
        return;
    }
    soup_message_add_flags(m_message.get(), SOUP_MESSAGE_NO_REDIRECT);
    SoupMessageHeaders* const headers = soup_message_get_request_headers(m_message.get());
    soup_message_headers_replace(headers, "Accept", acceptedTypes);
    if (!options.request->entityTag.empty()) {
        soup_message_headers_replace(headers, "If-None-Match", options.request->entityTag.c_str());
    }
    if (!options.request->lastModified.empty()) {
        soup_message_headers_replace(headers, "If-Modified-Since",
                                     options.request->lastModified.c_str());
    }
    g_signal_connect(m_message.get(), "network-event", G_CALLBACK(onNetworkEvent), this);
    if (options.sendsCredentials && options.request->credentials) {
        g_signal_connect(m_message.get(), "authenticate", G_CALLBACK(onAuthenticate), this);
    }
}

HttpExchange::~HttpExchange() {
    if (m_message) {
        g_signal_handlers_disconnect_by_data(m_message.get(), this);
    }
}

Result<void, DownloadFailure> HttpExchange::send() {
    if (!m_message) {
        return DownloadFailure{translatable("this is no valid address"), {}, false};
    }
    if (const std::string& file = m_options.request->certificateAuthorities; !file.empty()) {
        const auto database = authoritiesIn(file);
        if (!database) {
            return DownloadFailure{database.error(), {}, false};
        }
        soup_session_set_tls_database(m_session.get(), database->get());
    }
    m_usesProxy = usesProxy();
    if (const auto checked = checkResolvedAddresses(); !checked) {
        return checked;
    }
    GError* error = nullptr;
    m_answer.reset(
        soup_session_send(m_session.get(), m_message.get(), m_cancellable.get(), &error));
    const ErrorHandle owned(error);
    return m_answer ? Result<void, DownloadFailure>() : failureOf(owned);
}

DownloadFailure HttpExchange::failureOf(const ErrorHandle& error) const {
    return m_isRefused ? privateAddress()
                       : exchangeError(
                             *error, soup_message_get_tls_peer_certificate_errors(m_message.get()));
}

unsigned HttpExchange::status() const {
    return soup_message_get_status(m_message.get());
}

std::string HttpExchange::header(const char* name) const {
    const char* const value =
        soup_message_headers_get_one(soup_message_get_response_headers(m_message.get()), name);
    return value != nullptr ? value : "";
}

Result<std::size_t, DownloadFailure> HttpExchange::read(std::span<char> place) {
    GError* error = nullptr;
    const gssize count = g_input_stream_read(m_answer.get(), place.data(), place.size(),
                                             m_cancellable.get(), &error);
    const ErrorHandle owned(error);
    return count >= 0 ? Result<std::size_t, DownloadFailure>(static_cast<std::size_t>(count))
                      : failureOf(owned);
}

// Which addresses the server has.

bool HttpExchange::usesProxy() const {
    const TextsHandle proxies(g_proxy_resolver_lookup(g_proxy_resolver_get_default(),
                                                      m_address.url.c_str(), nullptr, nullptr));
    return proxies && *proxies != nullptr && std::string("direct://") != *proxies.get();
}

// Before anything is sent to them. A name that cannot be resolved is reported by the library, or
// is known to the proxy alone.
Result<void, DownloadFailure> HttpExchange::checkResolvedAddresses() {
    if (m_options.allowsPrivateAddress) {
        return {};
    }
    const ObjectHandle<GResolver> resolver(g_resolver_get_default());
    const std::unique_ptr<GList, AddressesFree> addresses(g_resolver_lookup_by_name(
        resolver.get(), m_address.host.c_str(), m_cancellable.get(), nullptr));
    for (const GList* link = addresses.get(); link != nullptr; link = link->next) {
        if (!isPublic(static_cast<GInetAddress*>(link->data))) {
            return privateAddress();
        }
    }
    return {};
}

// The name may have been resolved to other addresses again since.
void HttpExchange::onNetworkEvent(SoupMessage*, GSocketClientEvent event, GIOStream* connection,
                                  gpointer self) {
    if (event == G_SOCKET_CLIENT_CONNECTED) {
        static_cast<HttpExchange*>(self)->checkConnection(connection);
    }
}

void HttpExchange::checkConnection(GIOStream* connection) {
    if (m_usesProxy || !G_IS_SOCKET_CONNECTION(connection)) {
        return;
    }
    const ObjectHandle<GSocketAddress> remote(
        g_socket_connection_get_remote_address(G_SOCKET_CONNECTION(connection), nullptr));
    const bool isKnown = remote && G_IS_INET_SOCKET_ADDRESS(remote.get());
    m_wasPrivate =
        !isKnown ||
        !isPublic(g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(remote.get())));
    if (m_wasPrivate && !m_options.allowsPrivateAddress) {
        m_isRefused = true;
        g_cancellable_cancel(m_cancellable.get());
    }
}

gboolean HttpExchange::onAuthenticate(SoupMessage*, SoupAuth* auth, gboolean isRetry,
                                      gpointer self) {
    const auto& exchange = *static_cast<HttpExchange*>(self);
    if (isRetry != FALSE || soup_auth_is_for_proxy(auth) != FALSE) {
        return FALSE;
    }
    if (const auto credentials = exchange.m_options.request->credentials()) {
        soup_auth_authenticate(auth, credentials->user.c_str(), credentials->password.c_str());
        return TRUE;
    }
    return FALSE;
}

} // namespace quorvel::freedesktop::network
