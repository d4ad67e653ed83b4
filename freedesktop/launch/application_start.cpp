#include "freedesktop/launch/application_start.h"

#include <algorithm>
#include <array>
#include <utility>

#include "freedesktop/glib/call_after.h"
#include "freedesktop/glib/session_bus.h"
#include "freedesktop/glib/weak_reference.h"
#include "freedesktop/launch/exec_line.h"
#include "freedesktop/launch/openable_link.h"

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

// The name on the bus of one that can be activated there, else empty.
std::string busName(GDesktopAppInfo* entry) {
    std::string name = nameOf(entry);
    if (g_desktop_app_info_get_boolean(entry, "DBusActivatable") == FALSE ||
        !name.ends_with(entrySuffix)) {
        return {};
    }
    name.resize(name.size() - entrySuffix.size());
    return g_dbus_is_name(name.c_str()) != FALSE ? name : std::string();
}

std::string objectPath(std::string name) {
    std::replace(name.begin(), name.end(), '.', '/');
    std::replace(name.begin(), name.end(), '-', '_');
    return '/' + name;
}

// The words before a command that runs in a terminal; empty where there is no terminal.
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

// Why it could not be started; empty where it was. Nobody needs to wait for the process's end.
std::string startProcess(const std::vector<std::string>& arguments, const std::string& folder) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    GError* error = nullptr;
    g_spawn_async(folder.empty() ? nullptr : folder.c_str(), argv.data(), nullptr,
                  G_SPAWN_SEARCH_PATH, nullptr, nullptr, nullptr, &error);
    const ErrorHandle held(error);
    return error != nullptr ? shortened(error->message) : "";
}

std::string startProgram(GDesktopAppInfo* entry, const Opening& opening) {
    auto arguments = commandOf(entry, opening.link);
    if (!arguments) {
        return "its entry has no command line";
    }
    arguments->insert(arguments->end(), opening.arguments.begin(), opening.arguments.end());
    if (g_desktop_app_info_get_boolean(entry, "Terminal") != FALSE) {
        const std::vector<std::string> terminal = terminalCommand();
        if (terminal.empty()) {
            return "it needs a terminal, and there is none";
        }
        arguments->insert(arguments->begin(), terminal.begin(), terminal.end());
    }
    return startProcess(*arguments, textOf(entry, "Path"));
}

// Nothing of the message has reached an application then.
bool isUnknownToTheBus(const GError* error) {
    return g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE ||
           g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE;
}

// Replies find it by a weak reference: they also come, as cancelled, after its end.
class Activation final : public StartUnderWay, public std::enable_shared_from_this<Activation> {
public:
    Activation(EntryHandle entry, Opening opening, StartEnded ended)
        : m_entry(std::move(entry))
        , m_opening(std::move(opening))
        , m_ended(std::move(ended))
        , m_cancellable(g_cancellable_new()) {}
    ~Activation() override { g_cancellable_cancel(m_cancellable.get()); }
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;

    void begin(double seconds) {
        m_deadline = callAfter(seconds, [reference = weak_from_this()] {
            if (const auto self = reference.lock()) {
                self->end("it did not answer");
            }
        });
        m_request.emplace([reference = weak_from_this()](BusHandle bus) {
            if (const auto self = reference.lock()) {
                self->callApplication(bus.get());
            }
        });
    }

private:
    void callApplication(GDBusConnection* bus);
    void takeReply(const GError* error);
    void end(const std::string& problem) {
        m_deadline.reset();
        m_request.reset();
        g_cancellable_cancel(m_cancellable.get());
        if (const StartEnded ended = std::exchange(m_ended, nullptr)) {
            ended(problem);
        }
    }

    EntryHandle m_entry;
    Opening m_opening;
    StartEnded m_ended; // null once it was called
    ObjectHandle<GCancellable> m_cancellable;
    SourceHandle m_deadline;
    std::optional<SessionBusRequest> m_request;
};

void Activation::callApplication(GDBusConnection* bus) {
    if (bus == nullptr) {
        end(startProgram(m_entry.get(), m_opening));
        return;
    }
    GVariantBuilder surroundings;
    g_variant_builder_init(&surroundings, G_VARIANT_TYPE_VARDICT);
    std::array<const char*, 2> links{m_opening.link ? m_opening.link->c_str() : nullptr, nullptr};
    const bool hasLink = m_opening.link.has_value();
    GVariant* const values = hasLink ? g_variant_new("(^asa{sv})", links.data(), &surroundings)
                                     : g_variant_new("(a{sv})", &surroundings);
    const GAsyncReadyCallback replied = [](GObject* source, GAsyncResult* result, gpointer data) {
        GError* error = nullptr;
        const VariantHandle reply(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error));
        const ErrorHandle held(error);
        if (const auto self = takeWeakReference<Activation>(data)) {
            self->takeReply(error);
        }
    };
    const std::string name = busName(m_entry.get());
    const int ownDeadlineIsEnough = G_MAXINT;
    g_dbus_connection_call(bus, name.c_str(), objectPath(name).c_str(),
                           "org.freedesktop.Application", hasLink ? "Open" : "Activate", values,
                           nullptr, G_DBUS_CALL_FLAGS_NONE, ownDeadlineIsEnough,
                           m_cancellable.get(), replied, newWeakReference(weak_from_this()));
}

void Activation::takeReply(const GError* error) {
    if (error == nullptr) {
        end("");
    } else if (isUnknownToTheBus(error)) {
        end(startProgram(m_entry.get(), m_opening));
    } else {
        end(shortened(error->message));
    }
}

} // namespace

std::string nameOf(GDesktopAppInfo* entry) {
    return orEmpty(g_app_info_get_id(G_APP_INFO(entry)));
}

std::optional<std::vector<std::string>> commandOf(GDesktopAppInfo* entry,
                                                  const std::optional<std::string>& link) {
    const EntryFacts facts{orEmpty(g_app_info_get_name(G_APP_INFO(entry))), textOf(entry, "Icon"),
                           orEmpty(g_desktop_app_info_get_filename(entry))};
    return argumentsOf(orEmpty(g_app_info_get_commandline(G_APP_INFO(entry))), facts, link);
}

std::shared_ptr<StartUnderWay> startApplication(EntryHandle entry, Opening opening, double seconds,
                                                StartEnded ended) {
    if (!opening.arguments.empty() || busName(entry.get()).empty()) {
        ended(startProgram(entry.get(), opening));
        return nullptr;
    }
    const auto activation =
        std::make_shared<Activation>(std::move(entry), std::move(opening), std::move(ended));
    activation->begin(seconds);
    return activation;
}

} // namespace quorvel::freedesktop::launch
