// Downloads from a server on this machine that does everything wrong that a server can do.
#include "freedesktop/network/download.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <zlib.h>

#include "tests/freedesktop/network/fake_resolver.h"
#include "tests/freedesktop/network/web_server.h"

namespace quorvel::freedesktop::network {
namespace {

using testing_network::answer;
using testing_network::answering;
using testing_network::Connection;
using testing_network::FakeResolver;
using testing_network::redirecting;
using testing_network::Request;
using testing_network::TestAuthority;
using testing_network::WebServer;

const std::string calendar = "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n";
constexpr const char* names = "IP:127.0.0.1,IP:127.0.0.2,DNS:localhost";

class DownloadTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { authority = new TestAuthority(); }
    static void TearDownTestSuite() { delete authority; }

    static DownloadRequest request(const std::string& url) {
        DownloadRequest request;
        request.url = url;
        request.certificateAuthorities = authority->file();
        request.longestSilence = 2;
        return request;
    }
    // The content, or "error: " and what is wrong.
    std::string fetch(const DownloadRequest& request) {
        std::string content;
        const auto result = download(request, [&](std::string_view piece) {
            content += piece;
            return Result<void, TranslatableText>();
        });
        if (!result) {
            mayPass = result.error().mayPass;
            return "error: " + result.error().what.english();
        }
        latest = *result;
        return result->isUnchanged ? "unchanged" : content;
    }
    std::string fetch(const std::string& url) { return fetch(request(url)); }

    static TestAuthority* authority;
    WebServer server{authority->issue(names)};
    Download latest;
    bool mayPass = false; // of the latest failure
};

TestAuthority* DownloadTest::authority = nullptr;

std::string gzip(const std::string& content) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY),
              Z_OK);
    std::string result(deflateBound(&stream, content.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    result.resize(stream.total_out);
    deflateEnd(&stream);
    return result;
}

TEST_F(DownloadTest, ReceivesTheContent) {
    server.on("/a", answering(answer(calendar, "ETag: \"1\"\r\nLast-Modified: yesterday\r\n")));
    EXPECT_EQ(fetch(server.url("/a?b=c")), calendar);
    EXPECT_EQ(latest.entityTag, "\"1\"");
    EXPECT_EQ(latest.lastModified, "yesterday");
    ASSERT_EQ(server.requests().size(), 1U);
    const Request sent = server.requests()[0];
    EXPECT_EQ(sent.target, "/a?b=c");
    EXPECT_EQ(sent.headers.count("if-none-match"), 0U);
    EXPECT_EQ(sent.headers.count("authorization"), 0U);
    EXPECT_EQ(sent.headers.count("referer"), 0U);
    EXPECT_EQ(sent.headers.at("user-agent"), "quorvel");
}

TEST_F(DownloadTest, AsksOnlyForWhatHasChanged) {
    server.on("/a", [](const Request& sent, Connection& connection) {
        const bool isKnown = sent.headers.count("if-none-match") != 0 &&
                             sent.headers.at("if-none-match") == "\"1\"" &&
                             sent.headers.at("if-modified-since") == "yesterday";
        connection.send(isKnown ? answer("", "", "304 Not Modified") : answer(calendar));
    });
    DownloadRequest known = request(server.url("/a"));
    known.entityTag = "\"1\"";
    known.lastModified = "yesterday";
    EXPECT_EQ(fetch(known), "unchanged");
    EXPECT_EQ(latest.entityTag, "\"1\"");
    known.entityTag = "\"2\"";
    EXPECT_EQ(fetch(known), calendar);
}

TEST_F(DownloadTest, UnaskedUnchangedIsAnError) {
    server.on("/a", answering(answer("", "", "304 Not Modified")));
    EXPECT_EQ(fetch(server.url("/a")), "error: the server refuses to send it (status 304)");
}

TEST_F(DownloadTest, CompressedContentIsDecompressed) {
    server.on("/a", answering(answer(gzip(calendar), "Content-Encoding: gzip\r\n")));
    EXPECT_EQ(fetch(server.url("/a")), calendar);
}

TEST_F(DownloadTest, StatusesAreNamed) {
    const auto status = [&](const std::string& line) {
        server.on("/a", answering(answer("nothing", "", line)));
        return fetch(server.url("/a"));
    };
    EXPECT_EQ(status("404 Not Found"), "error: the server has no such calendar (status 404)");
    EXPECT_EQ(status("410 Gone"), "error: the server has no such calendar (status 410)");
    EXPECT_EQ(status("403 Forbidden"), "error: the server does not permit to read it (status 403)");
    EXPECT_EQ(status("429 Too Many"), "error: the server was asked too often (status 429)");
    EXPECT_EQ(status("500 Oops"), "error: the server has an error (status 500)");
    EXPECT_EQ(status("503 Later"), "error: the server has an error (status 503)");
    EXPECT_EQ(status("204 None"), "error: the server refuses to send it (status 204)");
    EXPECT_EQ(status("418 Teapot"), "error: the server refuses to send it (status 418)");
}

TEST_F(DownloadTest, FailuresOfServersAndNetworksMayPass) {
    server.on("/a", answering(answer("", "", "503 Later")));
    fetch(server.url("/a"));
    EXPECT_TRUE(mayPass);
    fetch(server.url("/missing"));
    EXPECT_FALSE(mayPass);
    fetch("https://nowhere.invalid/a");
    EXPECT_TRUE(mayPass);
    server.on("/a", redirecting("file:///etc/passwd"));
    fetch(server.url("/a"));
    EXPECT_FALSE(mayPass);
}

// Redirections.

TEST_F(DownloadTest, RedirectionsAreFollowed) {
    server.on("/end", answering(answer(calendar)));
    server.on("/4", redirecting("/end", "308 Permanent Redirect"));
    server.on("/3", redirecting("4", "307 Temporary Redirect"));
    server.on("/2", redirecting(server.url("/3"), "303 See Other"));
    server.on("/1", redirecting("/2", "301 Moved Permanently"));
    EXPECT_EQ(fetch(server.url("/1")), calendar);
    server.on("/0", redirecting("/1"));
    EXPECT_EQ(fetch(server.url("/0")), calendar) << "five redirections";
}

TEST_F(DownloadTest, RedirectionsInCirclesEnd) {
    server.on("/a", redirecting("/b"));
    server.on("/b", redirecting("/a"));
    EXPECT_EQ(fetch(server.url("/a")), "error: the server redirects more than 5 times");
    EXPECT_EQ(server.requests().size(), 6U);
}

TEST_F(DownloadTest, RedirectionsToFilesAreRefused) {
    server.on("/a", redirecting("file:///etc/passwd"));
    EXPECT_EQ(fetch(server.url("/a")), "error: the server redirects to an address that begins with "
                                       "'file:', which is not followed");
}

TEST_F(DownloadTest, RedirectionsToUnprotectedAddressesAreRefused) {
    WebServer plain{std::nullopt};
    plain.on("/b", answering(answer(calendar)));
    server.on("/a", redirecting(plain.url("/b")));
    EXPECT_EQ(fetch(server.url("/a")),
              "error: the server redirects to an unprotected address, which begins with 'http:'");
    EXPECT_EQ(plain.connections(), 0);
}

TEST_F(DownloadTest, RedirectionsToAPrivateAddressOfAnotherHostAreRefused) {
    WebServer other{authority->issue(names), "127.0.0.2"};
    other.on("/b", answering(answer(calendar)));
    for (const std::string& url :
         {other.url("/b"), other.url("/b", "localhost"), other.url("/b", "[::ffff:127.0.0.2]")}) {
        server.on("/a", redirecting(url));
        EXPECT_EQ(fetch(server.url("/a")),
                  "error: the server redirects to another host with a private address")
            << url;
    }
    for (const char* const host : {"127.2", "0x7f000002", "2130706434", "127.0.0.2."}) {
        server.on("/a", redirecting(other.url("/b", host)));
        EXPECT_EQ(fetch(server.url("/a")).substr(0, 7), "error: ") << host;
    }
    EXPECT_EQ(other.connections(), 0);
    EXPECT_EQ(fetch(other.url("/b")), calendar) << "the user may name it";
}

// A name that leads elsewhere when it is resolved again, between the check and the connection.
TEST_F(DownloadTest, RedirectionsToAPrivateAddressBehindANameAreRefused) {
    WebServer other{authority->issue("DNS:evil.test"), "127.0.0.2"};
    other.on("/b", answering(answer(calendar)));
    server.on("/a", redirecting(other.url("/b", "evil.test")));
    const std::string refused =
        "error: the server redirects to another host with a private address";
    FakeResolver resolver;
    resolver.setAnswers("evil.test", {"127.0.0.2"});
    EXPECT_EQ(fetch(server.url("/a")), refused);
    EXPECT_EQ(other.connections(), 0);
    resolver.setAnswers("evil.test", {"1.1.1.1", "127.0.0.2"});
    EXPECT_EQ(fetch(server.url("/a")), refused);
    EXPECT_EQ(other.bytesReceived(), 0U);
    EXPECT_EQ(fetch(other.url("/b", "evil.test")), calendar) << "the user may name it";
}

TEST_F(DownloadTest, RedirectionToItselfIsFollowedAtHome) {
    WebServer home{authority->issue("DNS:home.test"), "127.0.0.2"};
    FakeResolver resolver;
    resolver.setAnswers("home.test", {"127.0.0.2"});
    home.on("/a", redirecting(home.url("/b", "HOME.test")));
    home.on("/b", answering(answer(calendar)));
    EXPECT_EQ(fetch(home.url("/a", "home.test")), calendar);
}

TEST_F(DownloadTest, RedirectionWithoutATargetIsAnError) {
    server.on("/a", answering(answer("", "", "302 Found")));
    EXPECT_EQ(fetch(server.url("/a")), "error: the server redirects more than 5 times");
    server.on("/a", redirecting("https://"));
    EXPECT_EQ(fetch(server.url("/a")), "error: the server redirects to an invalid address");
}

// Certificates.

TEST_F(DownloadTest, WrongCertificatesAreNamed) {
    const auto withCertificate = [&](const testing_network::Certificate& certificate) {
        WebServer wrong{certificate};
        wrong.on("/a", answering(answer(calendar)));
        const std::string result = fetch(wrong.url("/a"));
        EXPECT_EQ(wrong.requests().size(), result == calendar ? 1U : 0U);
        return result;
    };
    EXPECT_EQ(withCertificate(authority->issueSelfSigned(names)),
              "error: the server's certificate is not signed by an authority that this machine "
              "knows");
    EXPECT_EQ(withCertificate(authority->issue("DNS:example.org,IP:127.0.0.9")),
              "error: the server's certificate is for another host");
    EXPECT_EQ(withCertificate(authority->issueExpired(names)),
              "error: the server's certificate has expired");
    EXPECT_EQ(withCertificate(authority->issue(names)), calendar);
}

TEST_F(DownloadTest, AuthorityOfTheTestIsUnknownToTheSystem) {
    server.on("/a", answering(answer(calendar)));
    DownloadRequest usual = request(server.url("/a"));
    usual.certificateAuthorities.clear();
    EXPECT_EQ(fetch(usual), "error: the server's certificate is not signed by an authority that "
                            "this machine knows");
}

TEST_F(DownloadTest, MissingFileOfAuthoritiesIsNamed) {
    DownloadRequest wrong = request(server.url("/a"));
    wrong.certificateAuthorities = "/nowhere.pem";
    EXPECT_EQ(fetch(wrong), "error: the certificate authorities in '/nowhere.pem' cannot be read");
}

TEST_F(DownloadTest, ServerWithoutProtectionIsAnError) {
    WebServer plain{std::nullopt};
    const std::string url = "https" + plain.url("/a").substr(4);
    EXPECT_EQ(fetch(url).substr(0, 6), "error:") << fetch(url);
}

// Slow, large and broken answers; the endless ones are for tests/app/refresh.

TEST_F(DownloadTest, SilenceIsBounded) {
    server.on("/headers", [](const Request&, Connection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nConte");
        connection.waitForClose();
    });
    server.on("/body", [](const Request&, Connection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nBEGIN:");
        connection.waitForClose();
    });
    EXPECT_EQ(fetch(server.url("/headers")), "error: the server does not answer");
    EXPECT_EQ(fetch(server.url("/body")), "error: the server does not answer");
}

TEST_F(DownloadTest, DecompressedContentIsBounded) {
    const std::string bomb = gzip(std::string(40 << 20, ' '));
    EXPECT_LT(bomb.size(), 60'000U);
    server.on("/a", answering(answer(bomb, "Content-Encoding: gzip\r\n")));
    DownloadRequest bounded = request(server.url("/a"));
    EXPECT_EQ(bounded.mostBytes, 64U << 20U) << "by default";
    bounded.mostBytes = 8 << 20;
    std::size_t received = 0;
    const auto result = download(bounded, [&](std::string_view piece) {
        received += piece.size();
        return Result<void, TranslatableText>();
    });
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().what.english(), "the calendar is larger than 8 MB");
    EXPECT_LE(received, 8U << 20U);
}

TEST_F(DownloadTest, ContentThatBreaksOffIsAnError) {
    server.on("/length", answering("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nBEGIN:"));
    EXPECT_EQ(fetch(server.url("/length")), "error: the server's answer is incomplete");
}

TEST_F(DownloadTest, AnswerThatIsNoneIsAnError) {
    server.on("/a", answering("nonsense\r\n\r\n"));
    EXPECT_EQ(fetch(server.url("/a")).substr(0, 6), "error:");
    server.on("/a", answering(""));
    EXPECT_EQ(fetch(server.url("/a")), "error: the server's answer is incomplete");
}

TEST_F(DownloadTest, UnreachableServersAreNamed) {
    std::string url;
    {
        WebServer gone{authority->issue(names)};
        url = gone.url("/a");
    }
    EXPECT_EQ(fetch(url), "error: the server cannot be reached");
    EXPECT_EQ(fetch("https://nowhere.invalid/a"), "error: the server's name cannot be resolved");
}

TEST_F(DownloadTest, ReceiverMayEndIt) {
    server.on("/a", answering(answer(calendar)));
    const auto result = download(request(server.url("/a")), [](std::string_view) {
        return Result<void, TranslatableText>(TranslatableText("the disk is full"));
    });
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().what.english(), "the disk is full");
}

// Passwords.

class PasswordTest : public DownloadTest {
protected:
    void SetUp() override {
        server.on("/a", [](const Request& sent, Connection& connection) {
            const auto found = sent.headers.find("authorization");
            const bool isRight =
                found != sent.headers.end() && found->second == "Basic bWU6c2VjcmV0"; // me:secret
            connection.send(isRight ? answer(calendar)
                                    : answer("", "WWW-Authenticate: Basic realm=\"x\"\r\n",
                                             "401 Unauthorized"));
        });
    }
    DownloadRequest withPassword(const std::string& url, const std::string& password) {
        DownloadRequest result = request(url);
        result.credentials = [this, password] {
            ++questions;
            return Credentials{"me", password};
        };
        return result;
    }
    int questions = 0;
};

TEST_F(PasswordTest, IsSentWhereTheServerAsksForIt) {
    EXPECT_EQ(fetch(withPassword(server.url("/a"), "secret")), calendar);
    EXPECT_EQ(questions, 1);
    server.on("/open", answering(answer(calendar)));
    EXPECT_EQ(fetch(withPassword(server.url("/open"), "secret")), calendar);
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(server.requests().back().headers.count("authorization"), 0U);
}

TEST_F(PasswordTest, MissingAndWrongOnesAreNamed) {
    const std::string refused = "error: the server asks for a name and a password";
    EXPECT_EQ(fetch(server.url("/a")), refused);
    EXPECT_EQ(fetch(withPassword(server.url("/a"), "wrong")), refused);
    EXPECT_EQ(questions, 1) << "it is asked for once";
}

TEST_F(PasswordTest, IsNotSentToAnotherServer) {
    WebServer other{authority->issue(names)}; // another port of the same host
    other.on("/b",
             answering(answer("", "WWW-Authenticate: Basic realm=\"x\"\r\n", "401 Unauthorized")));
    server.on("/a", redirecting(other.url("/b")));
    EXPECT_EQ(fetch(withPassword(server.url("/a"), "secret")),
              "error: the server asks for a name and a password");
    EXPECT_EQ(questions, 0);
    ASSERT_EQ(other.requests().size(), 1U);
    EXPECT_EQ(other.requests()[0].headers.count("authorization"), 0U);
}

} // namespace
} // namespace quorvel::freedesktop::network
