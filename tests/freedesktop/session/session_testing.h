// What the tests of things that happen by themselves share: a folder of their own, the main loop
// run for a while, and a kernel whose calls fail on request.
#pragma once

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "platform/system_log.h"

namespace quorvel::testing_session {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "quorvel-session-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        m_path = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string operator/(const std::string& name) const { return (m_path / name).string(); }
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

inline void write(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// As editors and synchronising programs do.
inline void replace(const std::string& path, const std::string& text) {
    write(path + ".new", text);
    std::filesystem::rename(path + ".new", path);
}

// Of the environment, until the end of the test.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const char* value) // null: unset
        : m_name(name) {
        if (const char* const before = std::getenv(name)) {
            m_before = before;
            m_wasSet = true;
        }
        set(value);
    }
    ~EnvironmentVariable() { set(m_wasSet ? m_before.c_str() : nullptr); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    void set(const char* value) const {
        value != nullptr ? setenv(m_name, value, 1) : unsetenv(m_name);
    }

    const char* m_name;
    std::string m_before;
    bool m_wasSet = false;
};

// Calendars are read, and reported, on other threads.
class RecordedLog final : public platform::SystemLog {
public:
    void log(std::string_view message) override {
        const std::lock_guard lock(m_mutex);
        m_lines.emplace_back(message);
    }
    std::vector<std::string> lines() const {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }
    void clear() {
        const std::lock_guard lock(m_mutex);
        m_lines.clear();
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

// Runs the default main context. runUntil: whether it happened in time.
void runFor(double seconds);
bool runUntil(const std::function<bool()>& happened, double seconds = 5);
// How often the main context wakes up in that time.
int wakeUpsDuring(double seconds);

// The process's calls of the kernel, as these say: setting the machine's clock, or taking all of
// its watches, is not for a test.
struct Kernel {
    std::atomic<bool> saysClockWasSet = false; // to the next that reads a timer, on any thread
    int watchesLeft = -1;                      // for files; -1: as many as there are
    std::string unwatchable;                   // a path that it may not watch
    static Kernel& instance();
};

} // namespace quorvel::testing_session
