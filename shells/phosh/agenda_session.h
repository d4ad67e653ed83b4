// Makes, holds and destroys the parts of an agenda on a thread of their own, so that the shell's
// thread neither reads anything nor waits.
#pragma once

#include <functional>
#include <memory>

#include "base/result.h"
#include "freedesktop/glib/thread_signal.h"
#include "shells/phosh/agenda_parts.h"

namespace quorvel::phosh {

// Belongs to the shell's thread. The parts belong to the session's thread until they are ready,
// then to the shell's thread, and to the session's again from the destruction of the session on. A
// mutex guards the change of hands.
//
// The widget's settings are variables of the process. So the parts of a session are made when those
// of all sessions before have been destroyed.
class AgendaSession {
public:
    using MakeParts = std::function<Result<std::unique_ptr<AgendaParts>>()>;

    // `make` runs on the session's thread. `onReady` is called once on the shell's thread, while
    // its main loop runs; parts() are there then, or the failure was logged. Both, and the log, are
    // called no more after the destruction, but the thread may be inside `make`.
    // Throws std::system_error where the system has no thread.
    AgendaSession(MakeParts make, std::shared_ptr<platform::SystemLog> log,
                  std::function<void()> onReady);
    // Does not wait. The parts must not be in use.
    ~AgendaSession();
    AgendaSession(const AgendaSession&) = delete;
    AgendaSession& operator=(const AgendaSession&) = delete;

    AgendaParts* parts() const; // null: not ready, or failed

private:
    class Exchange;
    std::shared_ptr<Exchange> m_exchange; // of both threads
    freedesktop::ThreadSignal m_ready;
};

} // namespace quorvel::phosh
