#include "tests/phosh/process_figures.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace quorvel::phosh {

namespace fs = std::filesystem;

namespace {

int entriesOf(const fs::path& folder) {
    std::error_code failure;
    int count = 0;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        ++count;
    }
    return count;
}

long privateDirty(const fs::path& folder) {
    std::ifstream file(folder / "smaps_rollup");
    for (std::string word; file >> word;) {
        if (word == "Private_Dirty:") {
            long kilobytes = 0;
            file >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

int watchesIn(const fs::path& descriptorInformation) {
    std::ifstream file(descriptorInformation);
    int count = 0;
    for (std::string line; std::getline(file, line);) {
        count += line.starts_with("inotify ") ? 1 : 0;
    }
    return count;
}

int fileWatches(const fs::path& folder) {
    std::error_code failure;
    int count = 0;
    for (fs::directory_iterator entry(folder / "fdinfo", failure), end; !failure && entry != end;
         entry.increment(failure)) {
        count += watchesIn(entry->path());
    }
    return count;
}

} // namespace

ProcessFigures figuresOf(pid_t process) {
    const fs::path folder = fs::path("/proc") / std::to_string(process);
    return {privateDirty(folder), entriesOf(folder / "task"), entriesOf(folder / "fd"),
            fileWatches(folder)};
}

} // namespace quorvel::phosh
