#include "app/refresh/refresh_workers.h"

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>

#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include "freedesktop/plain_text/terminal_line.h"

namespace quorvel::app {

using freedesktop::network::DownloadFailure;

namespace {

constexpr std::size_t mostWorkers = 4; // at the same time
constexpr rlim_t largestFile = rlim_t{65} << 20U;
constexpr rlim_t largestMemory = rlim_t{QUORVEL_WORKER_MEGABYTES} << 20U; // 0: not limited
constexpr int exitUnwritable = 3;

// C libraries give the names of the resources different types.
void limit(auto resource, rlim_t most) {
    const struct rlimit limits { most, most };
    ::setrlimit(resource, &limits);
}

void limitThisProcess(double timeout) {
    if (largestMemory > 0) {
        limit(RLIMIT_AS, largestMemory);
    }
    limit(RLIMIT_CPU, static_cast<rlim_t>(std::ceil(timeout)) + 1);
    limit(RLIMIT_FSIZE, largestFile);
    limit(RLIMIT_CORE, 0);
    const double seconds = std::floor(timeout);
    const struct itimerval timer {
        {}, { static_cast<time_t>(seconds), static_cast<suseconds_t>((timeout - seconds) * 1e6) }
    };
    std::signal(SIGALRM, SIG_DFL);
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

void printError(const std::string& what) {
    std::fprintf(stderr, "quorvel: %s\n", freedesktop::terminalLine(what).c_str());
}

// The exit status of a worker.
int refreshInThisProcess(const std::string& url, const RefreshOptions& options) {
    try {
        limitThisProcess(options.timeout);
        const Result<RefreshOutcome> outcome = refreshCalendar(url, options);
        if (outcome) {
            return *outcome == RefreshOutcome::current ? EXIT_SUCCESS : EXIT_FAILURE;
        }
        printError(message(outcome.error()));
    } catch (const std::exception& error) {
        printError(error.what());
    }
    return exitUnwritable;
}

DownloadFailure endedBySignal(int signal, double timeout) {
    if (signal == SIGALRM) {
        const auto seconds = static_cast<long>(std::ceil(timeout));
        return {{translatable("the server takes longer than {1} s"),
                 {TranslatableText::verbatim(std::to_string(seconds))}},
                {},
                true};
    }
    return {{translatable("reading what the server sends failed (signal {1})"),
             {TranslatableText::verbatim(std::to_string(signal))}},
            {},
            true};
}

class Workers {
public:
    explicit Workers(const RefreshOptions& options)
        : m_options(options) {}

    std::size_t count() const { return m_running.size(); }
    bool hasFailed() const { return m_hasFailed; }

    void start(const std::string& url) {
        const pid_t process = ::fork();
        if (process == 0) {
            ::_exit(refreshInThisProcess(url, m_options));
        }
        if (process > 0) {
            m_running[process] = url;
        } else {
            recordError(url, {{translatable("no process can be started ({1})"),
                               {TranslatableText(std::strerror(errno))}},
                              {},
                              true});
        }
    }

    void waitForOne() {
        int status = 0;
        const pid_t process = ::waitpid(-1, &status, 0);
        const auto ended = m_running.find(process);
        if (ended == m_running.end()) {
            return;
        }
        if (WIFSIGNALED(status)) {
            recordError(ended->second, endedBySignal(WTERMSIG(status), m_options.timeout));
        } else if (WEXITSTATUS(status) != EXIT_SUCCESS) {
            m_hasFailed = true;
        }
        m_running.erase(ended);
    }

private:
    void recordError(const std::string& url, const DownloadFailure& failure) {
        m_hasFailed = true;
        if (const Result<void> recorded = recordFailure(url, m_options, failure); !recorded) {
            printError(message(recorded.error()));
        }
    }

    const RefreshOptions& m_options;
    std::map<pid_t, std::string> m_running; // the URL that each refreshes
    bool m_hasFailed = false;
};

} // namespace

bool refreshCalendars(const std::vector<std::string>& urls, const RefreshOptions& options) {
    Workers workers(options);
    for (const std::string& url : urls) {
        if (workers.count() == mostWorkers) {
            workers.waitForOne();
        }
        workers.start(url);
    }
    while (workers.count() > 0) {
        workers.waitForOne();
    }
    return !workers.hasFailed();
}

} // namespace quorvel::app
