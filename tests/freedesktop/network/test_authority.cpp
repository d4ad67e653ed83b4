#include "tests/freedesktop/network/test_authority.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <gio/gio.h>

namespace quorvel::testing_network {

namespace fs = std::filesystem;

namespace {

void runOpenssl(const std::vector<std::string>& arguments) {
    std::vector<const char*> words{"openssl"};
    for (const std::string& argument : arguments) {
        words.push_back(argument.c_str());
    }
    words.push_back(nullptr);
    char* errors = nullptr;
    int status = 0;
    const gboolean isStarted =
        g_spawn_sync(nullptr, const_cast<char**>(words.data()), nullptr, G_SPAWN_SEARCH_PATH,
                     nullptr, nullptr, nullptr, &errors, &status, nullptr);
    const std::string output = errors != nullptr ? errors : "";
    g_free(errors);
    if (isStarted == FALSE || g_spawn_check_wait_status(status, nullptr) == FALSE) {
        throw std::runtime_error("openssl: " + output);
    }
}

} // namespace

TestAuthority::TestAuthority() {
    std::string name = (fs::temp_directory_path() / "quorvel-authority-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "mkdtemp");
    }
    m_folder = name;
    runOpenssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                "-nodes", "-subj", "/CN=Authority of the test", "-days", "2", "-keyout",
                path("authority.key"), "-out", file()});
    std::ofstream(path("issued")) << std::flush;
    std::ofstream(path("authority.conf"))
        << "[ca]\ndefault_ca = authority\n[authority]\ndefault_md = sha256\npolicy = names\n"
        << "unique_subject = no\nrand_serial = yes\ndatabase = " << path("issued")
        << "\nnew_certs_dir = " << m_folder.string() << "\n[names]\ncommonName = supplied\n";
}

TestAuthority::~TestAuthority() {
    std::error_code error;
    fs::remove_all(m_folder, error);
}

Certificate TestAuthority::issue(const std::string& names) {
    return sign(names, {"-days", "2"});
}

Certificate TestAuthority::issueExpired(const std::string& names) {
    return sign(names, {"-startdate", "20200101000000Z", "-enddate", "20200102000000Z"});
}

Certificate TestAuthority::sign(const std::string& names,
                                const std::vector<std::string>& validity) {
    const std::string name = path(std::to_string(++m_count));
    runOpenssl({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                "-subj", "/CN=Server of the test", "-keyout", name + ".key", "-out",
                name + ".csr"});
    std::ofstream(name + ".ext") << "subjectAltName=" << names << '\n';
    std::vector<std::string> arguments{"ca",
                                       "-batch",
                                       "-notext",
                                       "-config",
                                       path("authority.conf"),
                                       "-cert",
                                       file(),
                                       "-keyfile",
                                       path("authority.key"),
                                       "-in",
                                       name + ".csr",
                                       "-extfile",
                                       name + ".ext",
                                       "-out",
                                       name + ".pem"};
    arguments.insert(arguments.end(), validity.begin(), validity.end());
    runOpenssl(arguments);
    return {name + ".pem", name + ".key"};
}

Certificate TestAuthority::issueSelfSigned(const std::string& names) {
    const std::string name = path(std::to_string(++m_count));
    runOpenssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                "-nodes", "-subj", "/CN=Server of the test", "-addext", "subjectAltName=" + names,
                "-days", "2", "-keyout", name + ".key", "-out", name + ".pem"});
    return {name + ".pem", name + ".key"};
}

} // namespace quorvel::testing_network
