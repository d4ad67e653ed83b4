#include "freedesktop/network/exchange_error.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace quorvel::freedesktop::network {

namespace {

struct CertificateText {
    GTlsCertificateFlags flag;
    const char* text;
};

// The first one that applies is named.
constexpr std::array<CertificateText, 6> certificateTexts{{
    {G_TLS_CERTIFICATE_UNKNOWN_CA,
     translatable(
         "the server's certificate is not signed by an authority that this machine knows")},
    {G_TLS_CERTIFICATE_BAD_IDENTITY, translatable("the server's certificate is for another host")},
    {G_TLS_CERTIFICATE_EXPIRED, translatable("the server's certificate has expired")},
    {G_TLS_CERTIFICATE_NOT_ACTIVATED, translatable("the server's certificate is not valid yet")},
    {G_TLS_CERTIFICATE_REVOKED, translatable("the server's certificate has been revoked")},
    {G_TLS_CERTIFICATE_INSECURE, translatable("the server's certificate is not secure enough")},
}};

DownloadFailure lasting(TranslatableText what) {
    return {std::move(what), {}, false};
}

DownloadFailure passing(TranslatableText what) {
    return {std::move(what), {}, true};
}

DownloadFailure certificateError(GTlsCertificateFlags flags) {
    for (const CertificateText& candidate : certificateTexts) {
        if ((flags & candidate.flag) != 0) {
            return lasting(candidate.text);
        }
    }
    return lasting(translatable("the server's certificate is not valid"));
}

bool isUnreachable(const GError& error) {
    for (const GIOErrorEnum code : {G_IO_ERROR_CONNECTION_REFUSED, G_IO_ERROR_HOST_UNREACHABLE,
                                    G_IO_ERROR_NETWORK_UNREACHABLE, G_IO_ERROR_HOST_NOT_FOUND}) {
        if (g_error_matches(&error, G_IO_ERROR, code) != FALSE) {
            return true;
        }
    }
    return false;
}

bool isBrokenOff(const GError& error) {
    for (const GIOErrorEnum code : {G_IO_ERROR_PARTIAL_INPUT, G_IO_ERROR_CONNECTION_CLOSED}) {
        if (g_error_matches(&error, G_IO_ERROR, code) != FALSE) {
            return true;
        }
    }
    return g_error_matches(&error, G_TLS_ERROR, G_TLS_ERROR_EOF) != FALSE;
}

} // namespace

DownloadFailure exchangeError(const GError& error, GTlsCertificateFlags certificateErrors) {
    if (certificateErrors != G_TLS_CERTIFICATE_NO_FLAGS ||
        g_error_matches(&error, G_TLS_ERROR, G_TLS_ERROR_BAD_CERTIFICATE) != FALSE) {
        return certificateError(certificateErrors);
    }
    if (error.domain == G_RESOLVER_ERROR) {
        return passing(translatable("the server's name cannot be resolved"));
    }
    if (isUnreachable(error)) {
        return passing(translatable("the server cannot be reached"));
    }
    if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE) {
        return passing(translatable("the server does not answer"));
    }
    if (isBrokenOff(error)) {
        return passing(translatable("the server's answer is incomplete"));
    }
    if (error.domain == G_TLS_ERROR) {
        return lasting(translatable("no protected connection to the server can be made"));
    }
    return lasting({translatable("the server's answer cannot be read ({1})"),
                    {TranslatableText::verbatim(g_quark_to_string(error.domain) +
                                                (' ' + std::to_string(error.code)))}});
}

DownloadFailure statusError(unsigned status) {
    const std::vector<TranslatableText> number{TranslatableText::verbatim(std::to_string(status))};
    switch (status) {
    case 401:
        return {translatable("the server asks for a name and a password"),
                translatable("store them with 'quorvel settings calendars --subscribe ADDRESS "
                             "--user NAME'"),
                false};
    case 403:
        return lasting(
            {translatable("the server does not permit to read it (status {1})"), number});
    case 404:
    case 410:
        return lasting({translatable("the server has no such calendar (status {1})"), number});
    case 429:
        return passing({translatable("the server was asked too often (status {1})"), number});
    default:
        return status >= 500
                   ? passing({translatable("the server has an error (status {1})"), number})
                   : lasting({translatable("the server refuses to send it (status {1})"), number});
    }
}

} // namespace quorvel::freedesktop::network
