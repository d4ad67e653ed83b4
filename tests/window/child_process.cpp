#include "tests/window/child_process.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace quorvel::window {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words,
                           const std::map<std::string, std::string>& environment,
                           const std::string& errorFile, int inheritedDescriptor,
                           const std::string& outputFile) {
    std::vector<std::string> arguments(words);
    std::vector<std::string> settings;
    for (const auto& [name, value] : environment) {
        settings.push_back(name + "=" + value);
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int appending = O_WRONLY | O_CREAT | O_APPEND;
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // Not the test's own: what the child leaves running would keep it open.
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputFile.c_str(), appending, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errorFile.c_str(), appending, 0600);
    if (inheritedDescriptor >= 0) {
        posix_spawn_file_actions_adddup2(&actions, inheritedDescriptor, 3);
    }
    const int failure = posix_spawn(&m_process, words[0].c_str(), &actions, nullptr,
                                    pointersTo(arguments).data(), pointersTo(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        throw std::system_error(failure, std::generic_category(), words[0]);
    }
}

ChildProcess::~ChildProcess() {
    end();
}

void ChildProcess::end() {
    if (!m_status) {
        kill(m_process, SIGTERM);
        if (!exitStatus(10)) {
            kill(m_process, SIGKILL);
            exitStatus(10);
        }
    }
}

std::optional<int> ChildProcess::exitStatus(double seconds) {
    becomesTrue(seconds, [this] {
        int status = 0;
        if (!m_status && waitpid(m_process, &status, WNOHANG) == m_process) {
            m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        }
        return m_status.has_value();
    });
    return m_status;
}

void rest(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace quorvel::window
