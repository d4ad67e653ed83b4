#include "freedesktop/launch/process_start.h"

#include <memory>
#include <optional>
#include <utility>

#include <glib.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/catalogs.h"
#include "freedesktop/launch/activation_token.h"
#include "freedesktop/launch/openable_link.h"
#include "freedesktop/launch/text_pointers.h"

namespace quorvel::freedesktop::launch {

namespace {

TextsHandle environmentWith(const std::string& activationToken) {
    char** variables = g_get_environ();
    for (const char* const name : activationTokenVariables) {
        variables = isPassableToken(activationToken)
                        ? g_environ_setenv(variables, name, activationToken.c_str(), TRUE)
                        : g_environ_unsetenv(variables, name);
    }
    const std::optional<std::string> language = usersLanguageVariable();
    variables = language ? g_environ_setenv(variables, "LANGUAGE", language->c_str(), TRUE)
                         : g_environ_unsetenv(variables, "LANGUAGE");
    return TextsHandle(variables);
}

struct RunningProcess {
    OnEndedSoon onEndedSoon; // may be null
    gint64 startedAt = g_get_monotonic_time();
};

void processEnded(GPid process, gint status, gpointer data) {
    const auto& running = *static_cast<const RunningProcess*>(data);
    g_spawn_close_pid(process);
    const double seconds =
        static_cast<double>(g_get_monotonic_time() - running.startedAt) / G_USEC_PER_SEC;
    if (running.onEndedSoon && seconds < soon &&
        g_spawn_check_wait_status(status, nullptr) == FALSE) {
        running.onEndedSoon();
    }
}

void freeRunningProcess(gpointer data) {
    delete static_cast<RunningProcess*>(data);
}

} // namespace

Result<void> startProcess(const ProcessStart& start, OnEndedSoon onEndedSoon) {
    std::vector<const char*> arguments = textPointers(start.arguments);
    const TextsHandle environment = environmentWith(start.activationToken);
    GPid process = 0;
    GError* error = nullptr;
    g_spawn_async(start.folder.empty() ? nullptr : start.folder.c_str(),
                  const_cast<char**>(arguments.data()), environment.get(),
                  static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD),
                  nullptr, nullptr, &process, &error);
    const ErrorHandle owned(error);
    if (error != nullptr) {
        return Error{shortened(error->message), {}, {}};
    }
    auto running = std::make_unique<RunningProcess>();
    running->onEndedSoon = std::move(onEndedSoon);
    g_child_watch_add_full(G_PRIORITY_DEFAULT, process, processEnded, running.release(),
                           freeRunningProcess);
    return {};
}

} // namespace quorvel::freedesktop::launch
