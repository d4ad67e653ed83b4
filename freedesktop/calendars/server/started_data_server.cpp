#include "freedesktop/calendars/server/started_data_server.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "freedesktop/calendars/server/server_check.h"
#include "freedesktop/io/module_function.h"

namespace quorvel::freedesktop::eds {

StartedDataServer::StartedDataServer(std::string module, std::unique_ptr<SourcesSearch> search)
    : m_module(std::move(module))
    , m_search(std::move(search)) {
    begin();
}

StartedDataServer::~StartedDataServer() {
    m_search->cancel();
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
        m_thread = std::thread([this] { end(start(m_module, *m_search)); });
    } catch (const std::system_error& error) {
        m_isRunning = false;
        m_result =
            ServerFailure{ServerFailure::Kind::failed, TranslatableText::verbatim(error.what())};
    }
}

void StartedDataServer::end(StartResult result) {
    std::function<void()> onLateAnswer;
    {
        const std::lock_guard lock(m_mutex);
        m_result = std::move(result);
        m_isRunning = false;
        if (server() != nullptr && m_onChanged) {
            server()->setChangedHandler(m_onChanged);
        }
        if (server() != nullptr && !m_isAwaited) {
            onLateAnswer = m_onChanged;
        }
    }
    m_ended.notify_one();
    if (onLateAnswer) {
        onLateAnswer();
    }
}

StartedDataServer::StartResult StartedDataServer::start(const std::string& module,
                                                        SourcesSearch& search) {
    if (auto check = checkDataServer(); !check) {
        return ServerFailure{ServerFailure::Kind::absent, std::move(check).error()};
    }
    std::error_code ignored;
    if (!std::filesystem::exists(module, ignored)) {
        return ServerFailure{
            ServerFailure::Kind::absent,
            translatable("the part of Quorvel for it, quorvel-eds, is not installed")};
    }
    auto service = search.find();
    if (!service) {
        return ServerFailure{ServerFailure::Kind::absent, std::move(service).error()};
    }
    const auto function = moduleFunction(module, makeDataServerSymbol);
    if (!function) {
        return ServerFailure{ServerFailure::Kind::failed,
                             {translatable("its library cannot be loaded: {1}"),
                              {TranslatableText::verbatim(function.error())}}};
    }
    std::unique_ptr<DataServer> server(
        reinterpret_cast<MakeDataServer>(*function)(service->c_str()));
    if (!server) {
        return ServerFailure{ServerFailure::Kind::failed,
                             translatable("its library does not work")};
    }
    return server;
}

ServerResult<CalendarList> StartedDataServer::calendars(Deadline deadline) {
    std::unique_lock lock(m_mutex);
    if (!m_isRunning && server() == nullptr && !m_isAwaited) {
        begin();
    }
    m_isAwaited = true;
    m_ended.wait_until(lock, deadline, [this] { return !m_isRunning; });
    m_isAwaited = false;
    if (m_isRunning) {
        return ServerFailure(); // silent
    }
    if (!m_result) {
        return m_result.error();
    }
    lock.unlock();
    return server()->calendars(deadline);
}

std::vector<CalendarEvents> StartedDataServer::events(const std::vector<std::string>& calendars,
                                                      SearchedRange range, Deadline deadline) {
    {
        const std::lock_guard lock(m_mutex);
        if (server() == nullptr) {
            return {};
        }
    }
    return server()->events(calendars, range, deadline);
}

void StartedDataServer::setChangedHandler(std::function<void()> onChanged) {
    const std::lock_guard lock(m_mutex);
    m_onChanged = std::move(onChanged);
    if (server() != nullptr) {
        server()->setChangedHandler(m_onChanged);
    }
}

} // namespace quorvel::freedesktop::eds
