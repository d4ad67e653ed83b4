#include "freedesktop/network/download.h"

#include <array>
#include <memory>
#include <utility>

#include "freedesktop/network/exchange_error.h"
#include "freedesktop/network/http_exchange.h"
#include "freedesktop/network/redirect.h"

namespace quorvel::freedesktop::network {

namespace {

constexpr unsigned notModified = 304;
constexpr std::size_t pieceSize = 64 << 10U; // bytes

bool isRedirection(unsigned status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// The requests that lead to the calendar.
class Journey {
public:
    Journey(const DownloadRequest& request, WebAddress start)
        : m_request(request)
        , m_start(start)
        , m_address(std::move(start)) {}

    // The exchange whose answer is not a redirection.
    Result<std::unique_ptr<HttpExchange>, DownloadFailure> follow() {
        for (int redirects = 0; redirects <= mostRedirects; ++redirects) {
            auto exchange = std::make_unique<HttpExchange>(m_address, options(redirects == 0));
            if (const auto sent = exchange->send(); !sent) {
                return sent.error();
            }
            if (redirects == 0) {
                m_isStartPrivate = exchange->wasPrivateAddress();
            }
            if (!isRedirection(exchange->status())) {
                return exchange;
            }
            const auto target = redirectTarget(m_address, exchange->header("Location"));
            if (!target) {
                return DownloadFailure{target.error(), {}, false};
            }
            m_address = *target;
        }
        return DownloadFailure{{translatable("the server redirects more than {1} times"),
                                {TranslatableText::verbatim(std::to_string(mostRedirects))}},
                               {},
                               false};
    }

private:
    // The user may name a server at home. A server may send the user back to itself, but not
    // elsewhere in the user's network.
    ExchangeOptions options(bool isFirst) const {
        const bool isSameHost = m_address.host == m_start.host;
        return {isFirst || (isSameHost && m_isStartPrivate), &m_request,
                m_address.hasSameOrigin(m_start)};
    }

    const DownloadRequest& m_request;
    WebAddress m_start;
    WebAddress m_address;
    bool m_isStartPrivate = false;
};

Result<void, DownloadFailure> receiveAll(HttpExchange& exchange, std::uint64_t mostBytes,
                                         const Receive& receive) {
    std::array<char, pieceSize> piece{};
    std::uint64_t total = 0;
    while (true) {
        const auto count = exchange.read(piece);
        if (!count) {
            return count.error();
        }
        if (*count == 0) {
            return {};
        }
        total += *count;
        if (total > mostBytes) {
            return DownloadFailure{{translatable("the calendar is larger than {1} MB"),
                                    {TranslatableText::verbatim(std::to_string(mostBytes >> 20U))}},
                                   {},
                                   false};
        }
        if (const auto received = receive({piece.data(), *count}); !received) {
            return DownloadFailure{received.error(), {}, false};
        }
    }
}

} // namespace

Result<Download, DownloadFailure> download(const DownloadRequest& request, const Receive& receive) {
    auto start = parseWebAddress(request.url);
    if (!start) {
        return DownloadFailure{start.error(), {}, false};
    }
    const auto exchange = Journey(request, *std::move(start)).follow();
    if (!exchange) {
        return exchange.error();
    }
    HttpExchange& last = **exchange;
    const bool isConditional = !request.entityTag.empty() || !request.lastModified.empty();
    if (last.status() == notModified && isConditional) {
        return Download{true, request.entityTag, request.lastModified};
    }
    if (last.status() != 200) {
        return statusError(last.status());
    }
    if (const auto received = receiveAll(last, request.mostBytes, receive); !received) {
        return received.error();
    }
    return Download{false, last.header("ETag"), last.header("Last-Modified")};
}

} // namespace quorvel::freedesktop::network
