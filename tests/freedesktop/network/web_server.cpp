#include "tests/freedesktop/network/web_server.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include <gio/gio.h>

#include "base/ascii_text.h"
#include "freedesktop/glib/handles.h"

namespace quorvel::testing_network {

using freedesktop::ObjectHandle;

namespace {

class StreamConnection final : public Connection {
public:
    StreamConnection(GIOStream* stream, GCancellable* cancellable)
        : m_stream(stream)
        , m_cancellable(cancellable) {}

    bool send(std::string_view bytes) override {
        return g_output_stream_write_all(g_io_stream_get_output_stream(m_stream), bytes.data(),
                                         bytes.size(), nullptr, m_cancellable, nullptr) != FALSE;
    }
    void waitForClose() override {
        while (read() > 0) {
        }
    }
    // The number of bytes that were added to text(); 0 or less at the end.
    gssize read() {
        std::array<char, 4096> piece{};
        const gssize count =
            g_input_stream_read(g_io_stream_get_input_stream(m_stream), piece.data(), piece.size(),
                                m_cancellable, nullptr);
        if (count > 0) {
            m_text.append(piece.data(), static_cast<std::size_t>(count));
        }
        return count;
    }
    const std::string& text() const { return m_text; }

private:
    GIOStream* m_stream;
    GCancellable* m_cancellable;
    std::string m_text;
};

Request requestOf(const std::string& head) {
    Request request;
    const std::size_t target = head.find(' ') + 1;
    request.target = head.substr(target, head.find(' ', target) - target);
    std::size_t line = head.find("\r\n");
    while (line != std::string::npos && head.compare(line, 4, "\r\n\r\n") != 0) {
        const std::size_t start = line + 2;
        line = head.find("\r\n", start);
        const std::string header = head.substr(start, line - start);
        const std::size_t colon = header.find(':');
        if (colon != std::string::npos) {
            request.headers[asciiLowerCase(header.substr(0, colon))] =
                std::string(trimmed(std::string_view(header).substr(colon + 1), " "));
        }
    }
    return request;
}

} // namespace

class WebServer::Service {
public:
    Service(std::optional<Certificate> certificate, const std::string& address)
        : m_address(address)
        , m_listener(g_socket_listener_new())
        , m_cancellable(g_cancellable_new()) {
        if (certificate) {
            m_certificate.reset(g_tls_certificate_new_from_files(
                certificate->certificateFile.c_str(), certificate->keyFile.c_str(), nullptr));
            if (!m_certificate) {
                throw std::runtime_error("the server's certificate cannot be read");
            }
        }
        const ObjectHandle<GSocketAddress> wanted(
            g_inet_socket_address_new_from_string(address.c_str(), 0));
        GSocketAddress* bound = nullptr;
        if (g_socket_listener_add_address(m_listener.get(), wanted.get(), G_SOCKET_TYPE_STREAM,
                                          G_SOCKET_PROTOCOL_TCP, nullptr, &bound,
                                          nullptr) == FALSE) {
            throw std::runtime_error("the server cannot listen");
        }
        const ObjectHandle<GSocketAddress> owned(bound);
        m_port = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(bound));
        m_accepting = std::thread([this] { accept(); });
    }

    ~Service() {
        g_cancellable_cancel(m_cancellable.get());
        m_accepting.join();
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    void on(const std::string& path, Handler handler) {
        const std::lock_guard lock(m_mutex);
        m_handlers[path] = std::move(handler);
    }
    std::vector<Request> requests() const {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }
    int connections() const { return m_connections; }
    std::size_t bytesReceived() const { return m_bytes; }
    int port() const { return m_port; }
    const std::string& address() const { return m_address; }
    bool isSecure() const { return m_certificate != nullptr; }

private:
    void accept() {
        while (true) {
            ObjectHandle<GSocketConnection> connection(
                g_socket_listener_accept(m_listener.get(), nullptr, m_cancellable.get(), nullptr));
            if (!connection) {
                return;
            }
            ++m_connections;
            m_threads.emplace_back([this, stream = connection.release()] {
                const ObjectHandle<GIOStream> owned(G_IO_STREAM(stream));
                serve(owned.get());
                g_io_stream_close(owned.get(), nullptr, nullptr);
            });
        }
    }

    void serve(GIOStream* plain) {
        countFirstBytes(plain);
        if (!m_certificate) {
            answer(plain);
            return;
        }
        const ObjectHandle<GIOStream> secure(
            g_tls_server_connection_new(plain, m_certificate.get(), nullptr));
        if (secure && g_tls_connection_handshake(G_TLS_CONNECTION(secure.get()),
                                                 m_cancellable.get(), nullptr) != FALSE) {
            answer(secure.get());
            g_io_stream_close(secure.get(), m_cancellable.get(), nullptr);
        }
    }

    // Without taking them.
    void countFirstBytes(GIOStream* plain) {
        GSocket* const socket = g_socket_connection_get_socket(G_SOCKET_CONNECTION(plain));
        if (g_socket_condition_wait(socket, G_IO_IN, m_cancellable.get(), nullptr) != FALSE) {
            m_bytes +=
                static_cast<std::size_t>(std::max<gssize>(g_socket_get_available_bytes(socket), 0));
        }
    }

    void answer(GIOStream* stream) {
        StreamConnection connection(stream, m_cancellable.get());
        while (connection.text().find("\r\n\r\n") == std::string::npos) {
            if (connection.read() <= 0) {
                return;
            }
        }
        const Request request = requestOf(connection.text());
        handlerOf(request)(request, connection);
    }

    Handler handlerOf(const Request& request) {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
        const auto handler = m_handlers.find(request.target.substr(0, request.target.find('?')));
        return handler != m_handlers.end()
                   ? handler->second
                   : answering(testing_network::answer("no such page", "", "404 Not Found"));
    }

    std::string m_address;
    ObjectHandle<GSocketListener> m_listener;
    ObjectHandle<GCancellable> m_cancellable;
    ObjectHandle<GTlsCertificate> m_certificate; // null: plain HTTP
    int m_port = 0;
    std::atomic<int> m_connections = 0;
    std::atomic<std::size_t> m_bytes = 0;
    mutable std::mutex m_mutex; // of the two below
    std::map<std::string, Handler> m_handlers;
    std::vector<Request> m_requests;
    std::thread m_accepting;
    std::vector<std::thread> m_threads; // of the accepting thread, until it has ended
};

WebServer::WebServer(std::optional<Certificate> certificate, const std::string& address)
    : m_service(std::make_shared<Service>(std::move(certificate), address)) {}

WebServer::~WebServer() = default;

int WebServer::port() const {
    return m_service->port();
}

std::string WebServer::url(const std::string& target, const std::string& host) const {
    return std::string(m_service->isSecure() ? "https" : "http") + "://" +
           (host.empty() ? m_service->address() : host) + ":" + std::to_string(port()) + target;
}

void WebServer::on(const std::string& path, Handler handler) {
    m_service->on(path, std::move(handler));
}

std::vector<Request> WebServer::requests() const {
    return m_service->requests();
}

int WebServer::connections() const {
    return m_service->connections();
}

std::size_t WebServer::bytesReceived() const {
    return m_service->bytesReceived();
}

std::string answer(std::string_view content, std::string_view headers, std::string_view status) {
    return "HTTP/1.1 " + std::string(status) + "\r\n" + std::string(headers) +
           "Connection: close\r\nContent-Length: " + std::to_string(content.size()) + "\r\n\r\n" +
           std::string(content);
}

Handler answering(std::string bytes) {
    return [bytes = std::move(bytes)](const Request&, Connection& connection) {
        connection.send(bytes);
    };
}

Handler redirecting(std::string location, std::string status) {
    return answering(answer("", "Location: " + location + "\r\n", status));
}

} // namespace quorvel::testing_network
