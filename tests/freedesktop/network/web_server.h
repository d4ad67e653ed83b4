// A web server on this machine whose answers are any bytes at all, also hostile ones.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/freedesktop/network/test_authority.h"

namespace quorvel::testing_network {

struct Request {
    std::string target;                         // "/team.ics?a=b"
    std::map<std::string, std::string> headers; // names in lower case
};

// One connection, for the handler of a request.
class Connection {
public:
    virtual ~Connection() = default;
    // False: the client has closed the connection, or the server ends.
    virtual bool send(std::string_view bytes) = 0;
    // Blocks until the client closes the connection or the server ends.
    virtual void waitForClose() = 0;
};

using Handler = std::function<void(const Request&, Connection&)>;

// Each connection has a thread and one request.
class WebServer {
public:
    // Without a certificate the server speaks plain HTTP.
    explicit WebServer(std::optional<Certificate> certificate,
                       const std::string& address = "127.0.0.1");
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    int port() const;
    // "https://127.0.0.1:1234/team.ics"; another host is one that leads here.
    std::string url(const std::string& target, const std::string& host = {}) const;
    // Replaces the handler of that path; others are answered by status 404.
    void on(const std::string& path, Handler handler);

    std::vector<Request> requests() const; // those that have arrived completely
    int connections() const;
    // How many bytes the clients have sent, encrypted or not, also before a request is complete.
    std::size_t bytesReceived() const;

private:
    class Service;
    std::shared_ptr<Service> m_service;
};

// "HTTP/1.1 200 OK" with the headers, each with its line end, and the content.
std::string answer(std::string_view content, std::string_view headers = {},
                   std::string_view status = "200 OK");
Handler answering(std::string bytes);
Handler redirecting(std::string location, std::string status = "302 Found");

} // namespace quorvel::testing_network
