// argument_recorder FILE MILLISECONDS [ARGUMENT]...: appends the arguments to the file, each with a
// NUL at its end and a newline at the end of all, and then waits.
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
        file << argv[i] << '\0';
    }
    file << '\n';
    file.close();
    std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(argv[2])));
    return 0;
}
