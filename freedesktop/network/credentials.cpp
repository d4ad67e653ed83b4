#include "freedesktop/network/credentials.h"

#include <memory>

#include <libsecret/secret.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/glib/session_bus.h"
#include "freedesktop/glib/session_bus_address.h"
#include "freedesktop/glib/text_hash.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop::network {

namespace {

constexpr const char* addressAttribute = "address";
constexpr const char* userAttribute = "user";

const SecretSchema& schema() {
    static const SecretSchema schema{"org.quorvel.Calendar",
                                     SECRET_SCHEMA_NONE,
                                     {{addressAttribute, SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {userAttribute, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                                     0,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr};
    return schema;
}

struct TableUnref {
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
};
using TableHandle = std::unique_ptr<GHashTable, TableUnref>;

struct ValueUnref {
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};
using ValueHandle = std::unique_ptr<SecretValue, ValueUnref>;

// The URL may be a secret itself, and attributes are not encrypted.
std::string addressOf(const std::string& url) {
    return secureHash(url);
}

Error serviceError(const ErrorHandle& error) {
    return {filled(translated("the secret service does not answer ({1})"), {messageOf(error)}),
            {},
            translated("start one, such as GNOME Keyring or KWallet")};
}

Error missingBus() {
    return {translated("there is no session bus, so there is no secret service"),
            {},
            translated("try again in a desktop session")};
}

std::optional<Credentials> credentialsOf(SecretRetrievable* item) {
    const TableHandle attributes(secret_retrievable_get_attributes(item));
    const auto* const user =
        static_cast<const char*>(g_hash_table_lookup(attributes.get(), userAttribute));
    const ValueHandle value(secret_retrievable_retrieve_secret_sync(item, nullptr, nullptr));
    const char* const password = value ? secret_value_get_text(value.get()) : nullptr;
    if (user == nullptr || password == nullptr) {
        return std::nullopt;
    }
    return Credentials{user, password};
}

} // namespace

std::optional<Credentials> storedCredentials(const std::string& url) {
    if (!mayHaveSessionBus()) {
        return std::nullopt;
    }
    const ObjectListHandle<GList> items(
        secret_password_search_sync(&schema(), SECRET_SEARCH_NONE, nullptr, nullptr,
                                    addressAttribute, addressOf(url).c_str(), nullptr));
    return items ? credentialsOf(SECRET_RETRIEVABLE(items->data)) : std::nullopt;
}

Result<void> storeCredentials(const std::string& url, const std::string& host,
                              const Credentials& credentials) {
    // Another user's entry would not be replaced.
    if (const Result<void> removed = removeCredentials(url); !removed) {
        return removed;
    }
    GError* error = nullptr;
    secret_password_store_sync(
        &schema(), SECRET_COLLECTION_DEFAULT, filled(translated("Calendar at {1}"), {host}).c_str(),
        credentials.password.c_str(), nullptr, &error, addressAttribute, addressOf(url).c_str(),
        userAttribute, credentials.user.c_str(), nullptr);
    const ErrorHandle owned(error);
    return error == nullptr ? Result<void>() : serviceError(owned);
}

Result<void> removeCredentials(const std::string& url) {
    if (!mayHaveSessionBus()) {
        return missingBus();
    }
    GError* error = nullptr;
    secret_password_clear_sync(&schema(), nullptr, &error, addressAttribute, addressOf(url).c_str(),
                               nullptr);
    const ErrorHandle owned(error);
    return error == nullptr ? Result<void>() : serviceError(owned);
}

} // namespace quorvel::freedesktop::network
