#include "freedesktop/calendars/server/started_data_server.h"

#include <system_error>
#include <utility>

#include <dlfcn.h>

namespace quorvel::freedesktop::eds {

StartedDataServer::StartedDataServer(std::string module)
    : m_module(std::move(module)) {
    begin();
}

StartedDataServer::~StartedDataServer() {
    m_searchEnd.cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void StartedDataServer::begin() {
    if (m_thread.joinable()) {
        m_thread.join();
    }
    m_isRunning = true;
    try {
        m_thread = std::thread([this] { end(start(m_module, m_searchEnd)); });
    } catch (const std::system_error& error) {
        m_isRunning = false;
        m_result = {nullptr, Outcome::failed, error.what()};
    }
}

void StartedDataServer::end(Result result) {
    std::function<void()> tell;
    {
        const std::lock_guard lock(m_mutex);
        m_result = std::move(result);
        m_isRunning = false;
        if (m_result.server && m_changed) {
            m_result.server->setChangedHandler(m_changed);
        }
        if (m_result.server && !m_isAwaited) {
            tell = m_changed;
        }
    }
    m_ended.notify_one();
    if (tell) {
        tell();
    }
}

// The module is never unloaded, as the library below it leaves threads and types behind.
StartedDataServer::Result StartedDataServer::start(const std::string& module,
                                                   SearchEnd& searchEnd) {
    if (auto problem = problemWithDataServer()) {
        return {nullptr, Outcome::absent, *std::move(problem)};
    }
    SourcesService service = findSourcesService(searchEnd);
    if (!service.name) {
        return {nullptr, Outcome::absent, std::move(service.problem)};
    }
    void* const handle = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (handle == nullptr) {
        const char* const reason = dlerror();
        return {nullptr, Outcome::failed,
                std::string("its library cannot be loaded: ") + (reason != nullptr ? reason : "")};
    }
    const auto make = reinterpret_cast<MakeDataServer>(dlsym(handle, makeDataServerSymbol));
    std::unique_ptr<DataServer> server(make != nullptr ? make(service.name->c_str()) : nullptr);
    dlclose(handle);
    if (!server) {
        return {nullptr, Outcome::failed, "its library does not work"};
    }
    return {std::move(server), Outcome::answered, {}};
}

CalendarList StartedDataServer::calendars(Deadline deadline) {
    std::unique_lock lock(m_mutex);
    if (!m_isRunning && !m_result.server && !m_isAwaited) {
        begin();
    }
    m_isAwaited = true;
    m_ended.wait_until(lock, deadline, [this] { return !m_isRunning; });
    m_isAwaited = false;
    if (m_isRunning) {
        return {};
    }
    if (!m_result.server) {
        return {m_result.outcome, {}, m_result.problem};
    }
    lock.unlock();
    return m_result.server->calendars(deadline);
}

std::vector<CalendarEvents> StartedDataServer::events(const std::vector<std::string>& calendars,
                                                      SearchedRange range, Deadline deadline) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_result.server) {
            return {};
        }
    }
    return m_result.server->events(calendars, range, deadline);
}

void StartedDataServer::setChangedHandler(std::function<void()> onChanged) {
    const std::lock_guard lock(m_mutex);
    m_changed = std::move(onChanged);
    if (m_result.server) {
        m_result.server->setChangedHandler(m_changed);
    }
}

} // namespace quorvel::freedesktop::eds
