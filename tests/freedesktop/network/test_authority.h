// A certificate authority of the test's own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quorvel::testing_network {

struct Certificate {
    std::string certificateFile; // PEM
    std::string keyFile;
};

// Creates its files in a temporary folder, which it removes. Throws where openssl fails.
class TestAuthority {
public:
    TestAuthority();
    ~TestAuthority();
    TestAuthority(const TestAuthority&) = delete;
    TestAuthority& operator=(const TestAuthority&) = delete;

    // The authority's own certificate, in PEM format.
    std::string file() const { return path("authority.pem"); }
    // `names` such as "IP:127.0.0.1,DNS:home.test". It is valid for two days.
    Certificate issue(const std::string& names);
    Certificate issueExpired(const std::string& names);
    Certificate issueSelfSigned(const std::string& names);

private:
    // `validity` is the part of openssl's command that says when it is valid.
    Certificate sign(const std::string& names, const std::vector<std::string>& validity);
    std::string path(const std::string& name) const { return (m_folder / name).string(); }

    std::filesystem::path m_folder;
    int m_count = 0;
};

} // namespace quorvel::testing_network
