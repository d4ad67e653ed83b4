#include "tests/freedesktop/launch/quorvel_open_fixture.h"

namespace quorvel::freedesktop {

namespace {

// Far more than the program may take.
constexpr guint patience = 40; // seconds

struct ProcessRun {
    GSubprocess* process;
    Outcome outcome;
    bool isOver = false;
};

void ended(GObject* process, GAsyncResult* result, gpointer data) {
    auto& run = *static_cast<ProcessRun*>(data);
    char* output = nullptr;
    char* errors = nullptr;
    g_subprocess_communicate_utf8_finish(G_SUBPROCESS(process), result, &output, &errors, nullptr);
    run.outcome.output = output != nullptr ? output : "";
    run.outcome.errors = errors != nullptr ? errors : "";
    g_free(output);
    g_free(errors);
    run.isOver = true;
}

gboolean giveUp(gpointer data) {
    g_subprocess_force_exit(static_cast<ProcessRun*>(data)->process);
    return G_SOURCE_REMOVE;
}

} // namespace

Outcome QuorvelOpenTest::quorvelOpen(const std::vector<std::string>& arguments,
                                     const Environment& environment) {
    std::vector<const char*> argv{QUORVEL_OPEN};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    argv.push_back(nullptr);
    GSubprocessLauncher* const launcher = g_subprocess_launcher_new(static_cast<GSubprocessFlags>(
        G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE));
    for (const auto& [name, value] : environment) {
        g_subprocess_launcher_setenv(launcher, name.c_str(), value.c_str(), TRUE);
    }
    const auto start = std::chrono::steady_clock::now();
    ProcessRun run{g_subprocess_launcher_spawnv(launcher, argv.data(), nullptr), {}};
    g_object_unref(launcher);
    const guint timeout = g_timeout_add_seconds(patience, giveUp, &run);
    g_subprocess_communicate_utf8_async(run.process, nullptr, nullptr, ended, &run);
    while (!run.isOver) {
        g_main_context_iteration(nullptr, TRUE);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    run.outcome.seconds = taken.count();
    const bool hasExited = g_subprocess_get_if_exited(run.process) != FALSE;
    run.outcome.status = hasExited ? g_subprocess_get_exit_status(run.process) : -1;
    if (g_main_context_find_source_by_id(nullptr, timeout) != nullptr) {
        g_source_remove(timeout);
    }
    g_object_unref(run.process);
    return run.outcome;
}

} // namespace quorvel::freedesktop
