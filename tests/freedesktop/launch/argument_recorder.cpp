// argument_recorder FILE MILLISECONDS [ARGUMENT]...: appends the arguments to the file, each with a
// NUL at its end and a newline at the end of all, and then waits. An argument "$NAME" stands for
// that variable of the environment, or "unset". RECORDER_STATUS is the exit status.
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

int main(int argc, char** argv) {
    if (argc < 3) {
        return 2;
    }
    std::ofstream file(argv[1], std::ios::app | std::ios::binary);
    for (int i = 3; i < argc; ++i) {
        const char* const value = argv[i][0] == '$' ? std::getenv(argv[i] + 1) : argv[i];
        file << (value != nullptr ? value : "unset") << '\0';
    }
    file << '\n';
    file.close();
    std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(argv[2])));
    const char* const status = std::getenv("RECORDER_STATUS");
    return status != nullptr ? std::atoi(status) : 0;
}
