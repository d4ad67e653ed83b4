#include "app/refresh/refresh_input.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "freedesktop/calendars/subscriptions/subscription_cache.h"
#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::translated;

namespace {

constexpr std::size_t mostInput = 1 << 20U; // bytes
constexpr double longestTimeout = 600;      // seconds
constexpr const char* authoritiesVariable = "QUORVEL_CERTIFICATE_AUTHORITIES";

std::string usualAuthorities() {
    const char* const file = std::getenv(authoritiesVariable);
    return file != nullptr ? file : "";
}

struct TaskFlags {
    bool storePassword = false;
    bool forgetPassword = false;
    bool help = false;
    bool version = false;
};

RefreshTask taskOf(const TaskFlags& flags) {
    if (flags.help) {
        return RefreshTask::help;
    }
    if (flags.version) {
        return RefreshTask::version;
    }
    if (flags.storePassword) {
        return RefreshTask::storePassword;
    }
    return flags.forgetPassword ? RefreshTask::forgetPassword : RefreshTask::refresh;
}

Error usageError() {
    return {translated("the arguments are wrong"), {}, translated("see 'quorvel-refresh --help'")};
}

} // namespace

Result<RefreshInput> parseRefreshArguments(const std::vector<std::string>& arguments) {
    RefreshInput input;
    input.options.cacheFolder = freedesktop::userSubscriptionFolder();
    input.options.certificateAuthorities = usualAuthorities();
    TaskFlags flags;
    CLI::App app;
    app.set_help_flag();
    app.add_flag("-h,--help", flags.help);
    app.add_flag("--version", flags.version);
    app.add_flag("--store-password", flags.storePassword);
    app.add_flag("--forget-password", flags.forgetPassword);
    app.add_option("--cache", input.options.cacheFolder);
    app.add_option("--timeout", input.options.timeout);
    app.add_option("--certificate-authorities", input.options.certificateAuthorities);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError&) {
        return usageError();
    }
    if (!(input.options.timeout > 0 && input.options.timeout <= longestTimeout)) {
        return usageError();
    }
    input.task = taskOf(flags);
    return input;
}

std::string refreshHelp() {
    return translated(
        "Usage: quorvel-refresh [OPTION]... <ADDRESSES\n"
        "\n"
        "Fetches the calendars whose addresses are the lines of standard input, and stores\n"
        "copies of them in the cache. 'quorvel' and its widgets start it.\n"
        "\n"
        "Options:\n"
        "  --cache DIR       where the copies are\n"
        "                    ($XDG_CACHE_HOME/quorvel/subscriptions)\n"
        "  --timeout SECONDS how long one calendar may take (30)\n"
        "  --certificate-authorities FILE\n"
        "                    trust those in FILE instead of the system's\n"
        "                    ($QUORVEL_CERTIFICATE_AUTHORITIES)\n"
        "  --store-password  store a password in the secret service: standard input has\n"
        "                    the address, the name and the password, each on a line\n"
        "  --forget-password remove the passwords of the addresses\n"
        "  -h, --help        print this help\n"
        "  --version         print the version\n"
        "\n"
        "Exit status: 0; 1 where a calendar could not be fetched; 2 for wrong usage.\n");
}

Result<std::vector<std::string>> readInputLines() {
    std::string text;
    std::array<char, 4096> piece{};
    while (text.size() <= mostInput) {
        const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            return Error{
                filled(translated("standard input cannot be read ({1})"), {std::strerror(errno)}),
                {},
                {}};
        }
        text.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    if (text.size() > mostInput) {
        return Error{translated("there is too much on standard input"), {}, {}};
    }
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        text.erase(0, end == std::string::npos ? end : end + 1);
    }
    return lines;
}

} // namespace quorvel::app
