#include "freedesktop/glib/child_program.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/handles.h"
#include "freedesktop/glib/weak_reference.h"
#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

struct ChildProgram::Running {
    OnEnded onEnded;
    bool hasEnded = false;

    static void onExit(GPid process, gint status, gpointer data) {
        g_spawn_close_pid(process);
        const auto running = lockWeakReference<Running>(data);
        if (!running) {
            return;
        }
        running->hasEnded = true;
        if (const OnEnded onEnded = std::exchange(running->onEnded, nullptr)) {
            onEnded(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
        }
    }
};

namespace {

Error systemError() {
    return {std::generic_category().message(errno), {}, {}};
}

// A file in memory, which, unlike a pipe, neither blocks nor ends who writes it.
Result<FileDescriptor> fileWith(const std::string& input) {
    FileDescriptor file(::memfd_create("input", MFD_CLOEXEC));
    std::size_t written = 0;
    while (file.isOpen() && written < input.size()) {
        const ssize_t count = ::write(file.get(), input.data() + written, input.size() - written);
        if (count < 0 && errno != EINTR) {
            return systemError();
        }
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    if (!file.isOpen() || ::lseek(file.get(), 0, SEEK_SET) != 0) {
        return systemError();
    }
    return file;
}

GSpawnFlags flagsOf(const ProgramCall& call) {
    return static_cast<GSpawnFlags>(G_SPAWN_DO_NOT_REAP_CHILD | G_SPAWN_STDOUT_TO_DEV_NULL |
                                    (call.showsErrors ? 0 : G_SPAWN_STDERR_TO_DEV_NULL));
}

Result<GPid> spawn(const ProgramCall& call) {
    const Result<FileDescriptor> input = fileWith(call.input);
    if (!input) {
        return input.error();
    }
    std::vector<const char*> words;
    for (const std::string& argument : call.arguments) {
        words.push_back(argument.c_str());
    }
    words.push_back(nullptr);
    GPid process = 0;
    GError* error = nullptr;
    g_spawn_async_with_fds(nullptr, const_cast<char**>(words.data()), nullptr, flagsOf(call),
                           nullptr, nullptr, &process, input->get(), -1, -1, &error);
    const ErrorHandle owned(error);
    return error == nullptr ? Result<GPid>(process) : Error{messageOf(owned), {}, {}};
}

} // namespace

Result<std::unique_ptr<ChildProgram>> ChildProgram::start(const ProgramCall& call,
                                                          OnEnded onEnded) {
    const Result<GPid> process = spawn(call);
    if (!process) {
        return process.error();
    }
    auto running = std::make_shared<Running>();
    running->onEnded = std::move(onEnded);
    // It stays after this object, so that the process leaves no trace in the system's table.
    GSource* const watch = g_child_watch_source_new(*process);
    g_source_set_callback(watch, G_SOURCE_FUNC(Running::onExit), newWeakReference<Running>(running),
                          freeWeakReference<Running>);
    GMainContext* const context = g_main_context_ref_thread_default();
    g_source_attach(watch, context);
    g_main_context_unref(context);
    g_source_unref(watch);
    return std::unique_ptr<ChildProgram>(new ChildProgram(std::move(running)));
}

ChildProgram::ChildProgram(std::shared_ptr<Running> running)
    : m_running(std::move(running)) {}

ChildProgram::~ChildProgram() = default;

bool ChildProgram::wait(double seconds) {
    const auto running = m_running; // the call may destroy this object
    bool isOver = false;
    DelayedCall timeout([&isOver] { isOver = true; });
    timeout.start(seconds);
    GMainContext* const context = g_main_context_ref_thread_default();
    while (!running->hasEnded && !isOver) {
        g_main_context_iteration(context, TRUE);
    }
    g_main_context_unref(context);
    return running->hasEnded;
}

} // namespace quorvel::freedesktop
