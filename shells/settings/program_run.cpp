#include "shells/settings/program_run.h"

#include <utility>

#include <gio/gio.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::ErrorHandle;
using freedesktop::ObjectHandle;

struct ProgramRun::State {
    std::function<void(const ProgramResult&)> onEnd; // null after the end
    ObjectHandle<GSubprocess> process;               // null: it could not be started
    ObjectHandle<GCancellable> cancellable;
    bool isTooSlow = false;
    std::unique_ptr<freedesktop::DelayedCall> deadline;

    void end(const ProgramResult& result) {
        deadline->stop();
        if (const auto call = std::exchange(onEnd, nullptr)) {
            call(result);
        }
    }
};

namespace {

struct BytesUnref {
    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
};
using BytesHandle = std::unique_ptr<GBytes, BytesUnref>;
using freedesktop::translated;

std::string textOf(const BytesHandle& bytes) {
    gsize size = 0;
    const auto* const data =
        static_cast<const char*>(bytes ? g_bytes_get_data(bytes.get(), &size) : nullptr);
    return data != nullptr ? std::string(data, size) : std::string();
}

ObjectHandle<GSubprocess> start(const std::vector<std::string>& arguments, bool hasInput,
                                ErrorHandle& failure) {
    std::vector<const char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        pointers.push_back(argument.c_str());
    }
    pointers.push_back(nullptr);
    GError* error = nullptr;
    const auto flags = static_cast<GSubprocessFlags>(
        G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE |
        (hasInput ? G_SUBPROCESS_FLAGS_STDIN_PIPE : G_SUBPROCESS_FLAGS_NONE));
    ObjectHandle<GSubprocess> process(g_subprocess_newv(pointers.data(), flags, &error));
    failure.reset(error);
    return process;
}

} // namespace

ProgramRun::ProgramRun(const std::vector<std::string>& arguments, double seconds,
                       std::function<void(const ProgramResult&)> onEnd, const std::string& input)
    : m_state(std::make_shared<State>()) {
    State& state = *m_state;
    state.onEnd = std::move(onEnd);
    state.cancellable.reset(g_cancellable_new());
    ErrorHandle failure;
    state.process = start(arguments, !input.empty(), failure);
    const std::weak_ptr<State> weak = m_state;
    if (!state.process) {
        state.deadline = std::make_unique<freedesktop::DelayedCall>(
            [weak, reason = freedesktop::messageOf(failure)] {
                if (const auto shared = weak.lock()) {
                    shared->end({false, {}, reason});
                }
            });
        state.deadline->start(0);
        return;
    }
    state.deadline = std::make_unique<freedesktop::DelayedCall>([weak] {
        if (const auto shared = weak.lock()) {
            shared->isTooSlow = true;
            g_subprocess_force_exit(shared->process.get());
        }
    });
    state.deadline->start(seconds);
    const GAsyncReadyCallback ended = [](GObject* object, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::weak_ptr<State>> owned(static_cast<std::weak_ptr<State>*>(data));
        GBytes* output = nullptr;
        GBytes* errors = nullptr;
        auto* const process = reinterpret_cast<GSubprocess*>(object);
        const bool isRead =
            g_subprocess_communicate_finish(process, result, &output, &errors, nullptr) != FALSE;
        const BytesHandle outputHandle(output);
        const BytesHandle errorsHandle(errors);
        if (const auto shared = owned->lock()) {
            shared->end(
                {isRead && g_subprocess_get_if_exited(process) != FALSE &&
                     g_subprocess_get_exit_status(process) == 0,
                 textOf(outputHandle),
                 shared->isTooSlow ? translated(text::programTooSlow) : textOf(errorsHandle)});
        }
    };
    const BytesHandle bytes(input.empty() ? nullptr : g_bytes_new(input.data(), input.size()));
    g_subprocess_communicate_async(state.process.get(), bytes.get(), state.cancellable.get(), ended,
                                   std::make_unique<std::weak_ptr<State>>(weak).release());
}

ProgramRun::~ProgramRun() {
    m_state->onEnd = nullptr;
    m_state->deadline->stop();
    g_cancellable_cancel(m_state->cancellable.get());
    if (m_state->process) {
        g_subprocess_force_exit(m_state->process.get());
    }
}

} // namespace quorvel::settings_pages
