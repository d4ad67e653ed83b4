#include "tests/freedesktop/network/fake_resolver.h"

#include <map>
#include <mutex>
#include <utility>

#include <gio/gio.h>

#include "base/ascii_text.h"

namespace quorvel::testing_network {

namespace {

std::mutex mutex; // of the answers
std::map<std::string, std::deque<std::string>> answers;
GResolver* machineResolver = nullptr;

GList* lookup(GResolver*, const char* name, GCancellable*, GError** error) {
    const std::lock_guard lock(mutex);
    const auto found = answers.find(asciiLowerCase(name));
    if (found == answers.end()) {
        g_set_error(error, G_RESOLVER_ERROR, G_RESOLVER_ERROR_NOT_FOUND, "no such name");
        return nullptr;
    }
    std::deque<std::string>& addresses = found->second;
    const std::string address = addresses.front();
    if (addresses.size() > 1) {
        addresses.pop_front();
    }
    return g_list_append(nullptr, g_inet_address_new_from_string(address.c_str()));
}

GList* lookupWithFlags(GResolver* resolver, const char* name, GResolverNameLookupFlags flags,
                       GCancellable*, GError** error) {
    if ((flags & G_RESOLVER_NAME_LOOKUP_FLAGS_IPV6_ONLY) != 0) {
        g_set_error(error, G_RESOLVER_ERROR, G_RESOLVER_ERROR_NOT_FOUND, "no such name");
        return nullptr;
    }
    return lookup(resolver, name, nullptr, error);
}

void finishTask(GResolver* resolver, GList* addresses, GError* error, GAsyncReadyCallback callback,
                gpointer data) {
    GTask* const task = g_task_new(resolver, nullptr, callback, data);
    if (error != nullptr) {
        g_task_return_error(task, error);
    } else {
        g_task_return_pointer(task, addresses, nullptr);
    }
    g_object_unref(task);
}

void lookupAsync(GResolver* resolver, const char* name, GCancellable*, GAsyncReadyCallback callback,
                 gpointer data) {
    GError* error = nullptr;
    GList* const addresses = lookup(resolver, name, nullptr, &error);
    finishTask(resolver, addresses, error, callback, data);
}

void lookupWithFlagsAsync(GResolver* resolver, const char* name, GResolverNameLookupFlags flags,
                          GCancellable*, GAsyncReadyCallback callback, gpointer data) {
    GError* error = nullptr;
    GList* const addresses = lookupWithFlags(resolver, name, flags, nullptr, &error);
    finishTask(resolver, addresses, error, callback, data);
}

GList* lookupFinish(GResolver*, GAsyncResult* result, GError** error) {
    return static_cast<GList*>(g_task_propagate_pointer(G_TASK(result), error));
}

void initializeClass(gpointer resolverClass, gpointer) {
    auto* const methods = static_cast<GResolverClass*>(resolverClass);
    methods->lookup_by_name = lookup;
    methods->lookup_by_name_async = lookupAsync;
    methods->lookup_by_name_finish = lookupFinish;
    methods->lookup_by_name_with_flags = lookupWithFlags;
    methods->lookup_by_name_with_flags_async = lookupWithFlagsAsync;
    methods->lookup_by_name_with_flags_finish = lookupFinish;
}

GType resolverType() {
    static const GType type = g_type_register_static_simple(
        G_TYPE_RESOLVER, "QuorvelFakeResolver", sizeof(GResolverClass), initializeClass,
        sizeof(GResolver), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

} // namespace

FakeResolver::FakeResolver() {
    machineResolver = g_resolver_get_default();
    auto* const fake = G_RESOLVER(g_object_new(resolverType(), nullptr));
    g_resolver_set_default(fake);
    g_object_unref(fake);
}

FakeResolver::~FakeResolver() {
    g_resolver_set_default(machineResolver);
    g_object_unref(machineResolver);
    const std::lock_guard lock(mutex);
    answers.clear();
}

void FakeResolver::setAnswers(const std::string& name, std::deque<std::string> addresses) {
    const std::lock_guard lock(mutex);
    answers[name] = std::move(addresses);
}

} // namespace quorvel::testing_network
