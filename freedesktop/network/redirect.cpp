#include "freedesktop/network/redirect.h"

#include <glib.h>

#include "base/ascii_text.h"
#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop::network {

namespace {

constexpr auto uriFlags = static_cast<GUriFlags>(
    G_URI_FLAGS_HAS_PASSWORD | G_URI_FLAGS_ENCODED_PATH | G_URI_FLAGS_ENCODED_QUERY |
    G_URI_FLAGS_ENCODED_FRAGMENT | G_URI_FLAGS_SCHEME_NORMALIZE);

TranslatableText invalidTarget() {
    return translatable("the server redirects to an invalid address");
}

TranslatableText invalidAddress() {
    return translatable("this is no valid address");
}

Result<WebAddress, TranslatableText> webAddressOf(GUri* uri) {
    const char* const host = g_uri_get_host(uri);
    if (host == nullptr || *host == '\0' || g_uri_get_userinfo(uri) != nullptr) {
        return invalidTarget();
    }
    const TextHandle url(g_uri_to_string(uri));
    return WebAddress{url.get(), g_uri_get_scheme(uri), asciiLowerCase(host), g_uri_get_port(uri)};
}

} // namespace

Result<WebAddress, TranslatableText> parseWebAddress(const std::string& url) {
    const UriHandle uri(g_uri_parse(url.c_str(), uriFlags, nullptr));
    const std::string scheme = uri ? g_uri_get_scheme(uri.get()) : "";
    if (scheme != "https" && scheme != "http") {
        return invalidAddress();
    }
    Result<WebAddress, TranslatableText> address = webAddressOf(uri.get());
    return address ? address : invalidAddress();
}

Result<WebAddress, TranslatableText> redirectTarget(const WebAddress& from,
                                                    const std::string& location) {
    const UriHandle base(g_uri_parse(from.url.c_str(), uriFlags, nullptr));
    const UriHandle uri(base ? g_uri_parse_relative(base.get(), location.c_str(), uriFlags, nullptr)
                             : nullptr);
    if (!uri) {
        return invalidTarget();
    }
    const std::string scheme = g_uri_get_scheme(uri.get());
    if (scheme != "https" && scheme != "http") {
        return TranslatableText(translatable("the server redirects to an address that begins with "
                                             "'{1}:', which is not followed"),
                                {TranslatableText::verbatim(scheme.substr(0, 20))});
    }
    Result<WebAddress, TranslatableText> target = webAddressOf(uri.get());
    if (target && scheme == "http" && (from.scheme != "http" || target->host != from.host)) {
        return TranslatableText(translatable(
            "the server redirects to an unprotected address, which begins with 'http:'"));
    }
    return target;
}

} // namespace quorvel::freedesktop::network
