#include "freedesktop/launch/application_start.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/translatable_text.h"
#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/session_bus.h"
#include "freedesktop/glib/weak_reference.h"
#include "freedesktop/launch/activation_token.h"
#include "freedesktop/launch/exec_line.h"
#include "freedesktop/launch/openable_link.h"
#include "freedesktop/launch/text_pointers.h"

namespace quorvel::freedesktop::launch {

namespace {

constexpr std::string_view entrySuffix = ".desktop";

std::string orEmpty(const char* text) {
    return text != nullptr ? text : "";
}

std::string textOf(GDesktopAppInfo* entry, const char* key) {
    const TextHandle text(g_desktop_app_info_get_string(entry, key));
    return orEmpty(text.get());
}

// The name of the entry as that of a bus client; empty if it is none.
std::string busName(GDesktopAppInfo* entry) {
    std::string name = nameOf(entry);
    if (!name.ends_with(entrySuffix)) {
        return {};
    }
    name.resize(name.size() - entrySuffix.size());
    return g_dbus_is_name(name.c_str()) != FALSE ? name : std::string();
}

bool supportsActivation(GDesktopAppInfo* entry) {
    return g_desktop_app_info_get_boolean(entry, "DBusActivatable") != FALSE &&
           !busName(entry).empty();
}

std::string objectPath(std::string name) {
    std::replace(name.begin(), name.end(), '.', '/');
    std::replace(name.begin(), name.end(), '-', '_');
    return '/' + name;
}

// The words that run a command in a terminal; empty if no terminal is installed.
std::vector<std::string> terminalCommand() {
    constexpr std::array<std::array<const char*, 2>, 5> terminals = {{{"x-terminal-emulator", "-e"},
                                                                      {"gnome-terminal", "--"},
                                                                      {"kgx", "-e"},
                                                                      {"konsole", "-e"},
                                                                      {"xterm", "-e"}}};
    for (const auto& [program, option] : terminals) {
        if (const TextHandle found(g_find_program_in_path(program)); found) {
            return {program, option};
        }
    }
    return {};
}

Error failure(std::string what) {
    return {std::move(what), {}, {}};
}

Result<void> startProgram(GDesktopAppInfo* entry, const LaunchArguments& given,
                          const OnEndedSoon& onEndedSoon) {
    auto arguments = commandOf(entry, given.links);
    if (!arguments) {
        return failure(translatable("its entry has no command line"));
    }
    arguments->insert(arguments->end(), given.arguments.begin(), given.arguments.end());
    if (g_desktop_app_info_get_boolean(entry, "Terminal") != FALSE) {
        const std::vector<std::string> terminal = terminalCommand();
        if (terminal.empty()) {
            return failure(translatable("it needs a terminal, and there is none"));
        }
        arguments->insert(arguments->begin(), terminal.begin(), terminal.end());
    }
    return startProcess({*std::move(arguments), textOf(entry, "Path"), given.activationToken},
                        onEndedSoon);
}

void beginPlatformData(GVariantBuilder& data, const std::string& activationToken) {
    g_variant_builder_init(&data, G_VARIANT_TYPE_VARDICT);
    if (isPassableToken(activationToken)) {
        for (const char* const key : {"activation-token", "desktop-startup-id"}) {
            g_variant_builder_add(&data, "{sv}", key,
                                  g_variant_new_string(activationToken.c_str()));
        }
    }
}

// The message has reached no application in these cases.
bool isUnknownToTheBus(const GError* error) {
    return g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE ||
           g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE;
}

// GIO calls back even after cancellation, so its callbacks have only a weak reference.
class Activation final : public PendingStart, public std::enable_shared_from_this<Activation> {
public:
    Activation(EntryHandle entry, LaunchArguments arguments, StartHandlers handlers)
        : m_entry(std::move(entry))
        , m_arguments(std::move(arguments))
        , m_handlers(std::move(handlers))
        , m_cancellable(g_cancellable_new()) {}
    ~Activation() override { g_cancellable_cancel(m_cancellable.get()); }
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;

    void begin(double seconds) {
        m_deadline.start(seconds);
        m_request.emplace([reference = weak_from_this()](BusHandle bus) {
            if (const auto self = reference.lock()) {
                self->callApplication(bus.get());
            }
        });
    }

private:
    void callApplication(GDBusConnection* bus);
    void onReply(const GError* error);
    void end(const Result<void>& result) {
        m_deadline.stop();
        m_request.reset();
        g_cancellable_cancel(m_cancellable.get());
        if (const auto onStarted = std::exchange(m_handlers.onStarted, nullptr)) {
            onStarted(result);
        }
    }

    EntryHandle m_entry;
    LaunchArguments m_arguments;
    StartHandlers m_handlers; // onStarted: null once it was called
    ObjectHandle<GCancellable> m_cancellable;
    DelayedCall m_deadline{[this] { end(failure(translatable("it did not answer"))); }};
    std::optional<SessionBusRequest> m_request;
};

void Activation::callApplication(GDBusConnection* bus) {
    if (bus == nullptr) {
        end(startProgram(m_entry.get(), m_arguments, m_handlers.onEndedSoon));
        return;
    }
    GVariantBuilder platformData;
    beginPlatformData(platformData, m_arguments.activationToken);
    std::vector<const char*> links = textPointers(m_arguments.links);
    const bool hasLinks = !m_arguments.links.empty();
    GVariant* const values = hasLinks ? g_variant_new("(^asa{sv})", links.data(), &platformData)
                                      : g_variant_new("(a{sv})", &platformData);
    const GAsyncReadyCallback replied = [](GObject* source, GAsyncResult* result, gpointer data) {
        GError* error = nullptr;
        const VariantHandle reply(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error));
        const ErrorHandle owned(error);
        if (const auto self = takeWeakReference<Activation>(data)) {
            self->onReply(error);
        }
    };
    const std::string name = busName(m_entry.get());
    constexpr int noTimeout = G_MAXINT; // m_deadline ends the call
    g_dbus_connection_call(bus, name.c_str(), objectPath(name).c_str(),
                           "org.freedesktop.Application", hasLinks ? "Open" : "Activate", values,
                           nullptr, G_DBUS_CALL_FLAGS_NONE, noTimeout, m_cancellable.get(), replied,
                           newWeakReference(weak_from_this()));
}

void Activation::onReply(const GError* error) {
    if (error == nullptr) {
        end({});
    } else if (isUnknownToTheBus(error)) {
        end(startProgram(m_entry.get(), m_arguments, m_handlers.onEndedSoon));
    } else {
        end(failure(shortened(error->message)));
    }
}

} // namespace

std::string nameOf(GDesktopAppInfo* entry) {
    return orEmpty(g_app_info_get_id(G_APP_INFO(entry)));
}

bool isRunning(GDesktopAppInfo* entry) {
    const std::string name = busName(entry);
    const BusHandle bus = name.empty() ? nullptr : waitForSessionBus();
    if (!bus) {
        return false;
    }
    const VariantHandle answer = callAndWait(
        bus.get(),
        {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner"},
        g_variant_new("(s)", name.c_str()), "(b)", longestAnswer);
    gboolean isOwned = FALSE;
    if (answer) {
        g_variant_get(answer.get(), "(b)", &isOwned);
    }
    return isOwned != FALSE;
}

std::optional<std::vector<std::string>> commandOf(GDesktopAppInfo* entry,
                                                  std::span<const std::string> links) {
    const EntryFacts facts{orEmpty(g_app_info_get_name(G_APP_INFO(entry))), textOf(entry, "Icon"),
                           orEmpty(g_desktop_app_info_get_filename(entry))};
    return argumentsOf(orEmpty(g_app_info_get_commandline(G_APP_INFO(entry))), facts, links);
}

std::shared_ptr<PendingStart> startApplication(EntryHandle entry, LaunchArguments arguments,
                                               double seconds, StartHandlers handlers) {
    if (!arguments.arguments.empty() || !supportsActivation(entry.get())) {
        handlers.onStarted(startProgram(entry.get(), arguments, handlers.onEndedSoon));
        return nullptr;
    }
    const auto activation =
        std::make_shared<Activation>(std::move(entry), std::move(arguments), std::move(handlers));
    activation->begin(seconds);
    return activation;
}

} // namespace quorvel::freedesktop::launch
