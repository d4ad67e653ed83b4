// A certificate authority of the test's own.
#pragma once

#include <filesystem>
#include <string>

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
    // `names` such as "IP:127.0.0.1,DNS:home.test". It is valid for so many days from now on.
    Certificate issue(const std::string& names, int days = 2);
    Certificate issueSelfSigned(const std::string& names);

private:
    std::string path(const std::string& name) const { return (m_folder / name).string(); }

    std::filesystem::path m_folder;
    int m_count = 0;
};

} // namespace quorvel::testing_network
