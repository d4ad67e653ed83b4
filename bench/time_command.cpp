// Runs a command to its end and prints what it took, for bench/start: seconds, processor seconds,
// minor page faults and the peak memory in kilobytes. A process inherits the peak of the one that
// started it, so that one must be small.
//   time_command PROGRAM ARGUMENT...

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("time_command: usage: time_command PROGRAM ARGUMENT...\n", stderr);
        return 1;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    if (posix_spawnp(&process, argv[1], &actions, nullptr, argv + 1, environ) != 0) {
        std::fprintf(stderr, "time_command: cannot start %s\n", argv[1]);
        return 1;
    }
    int status = 0;
    rusage usage{};
    wait4(process, &status, 0, &usage);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    posix_spawn_file_actions_destroy(&actions);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "time_command: %s failed\n", argv[1]);
        return 1;
    }
    std::printf("%.6f %.6f %ld %ld\n", elapsed.count(),
                secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime), usage.ru_minflt,
                usage.ru_maxrss);
    return 0;
}
