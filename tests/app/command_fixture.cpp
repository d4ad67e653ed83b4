#include "tests/app/command_fixture.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace quorvel::app {

namespace fs = std::filesystem;

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

class Pipe {
public:
    Pipe() {
        if (pipe2(m_ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
    }
    ~Pipe() {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int end(std::size_t index) const { return m_ends[index]; }
    void closeEnd(std::size_t index) {
        if (m_ends[index] >= 0) {
            close(std::exchange(m_ends[index], -1));
        }
    }

private:
    std::array<int, 2> m_ends{-1, -1};
};

// Reads both pipes at the same time, so that the process never blocks on one that is full.
void readBoth(const Pipe& output, const Pipe& errors, RunResult& result) {
    std::array<pollfd, 2> polled{pollfd{output.end(0), POLLIN, 0},
                                 pollfd{errors.end(0), POLLIN, 0}};
    std::array<std::string*, 2> texts{&result.output, &result.errors};
    std::array<char, 65536> buffer{};
    while (polled[0].fd >= 0 || polled[1].fd >= 0) {
        if (poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) {
            return;
        }
        for (std::size_t index = 0; index < polled.size(); ++index) {
            if (polled[index].fd < 0 || polled[index].revents == 0) {
                continue;
            }
            const ssize_t count = read(polled[index].fd, buffer.data(), buffer.size());
            if (count > 0) {
                texts[index]->append(buffer.data(), static_cast<std::size_t>(count));
            } else {
                polled[index].fd = -1;
            }
        }
    }
}

pid_t spawn(const std::string& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment,
            const posix_spawn_file_actions_t& actions) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> settings;
    for (const auto& [name, value] : environment) {
        settings.push_back(name + "=" + value);
    }
    pid_t process = 0;
    const int failure = posix_spawn(&process, program.c_str(), &actions, nullptr,
                                    pointersTo(words).data(), pointersTo(settings).data());
    if (failure != 0) {
        throw std::system_error(failure, std::generic_category(), "posix_spawn");
    }
    return process;
}

RunResult spawnAndRead(const std::string& program, const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& environment,
                       const std::string& inputPath, const std::string& outputPath) {
    Pipe output;
    Pipe errors;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, inputPath.c_str(), O_RDONLY, 0);
    if (outputPath.empty()) {
        posix_spawn_file_actions_adddup2(&actions, output.end(1), STDOUT_FILENO);
    } else {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputPath.c_str(), O_WRONLY, 0);
    }
    posix_spawn_file_actions_adddup2(&actions, errors.end(1), STDERR_FILENO);
    const pid_t process = spawn(program, arguments, environment, actions);
    posix_spawn_file_actions_destroy(&actions);
    output.closeEnd(1);
    errors.closeEnd(1);
    RunResult result;
    readBoth(output, errors, result);
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

} // namespace

CommandTest::CommandTest() {
    std::string name = (fs::temp_directory_path() / "quorvel-app-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "mkdtemp");
    }
    m_folder = name;
    for (const char* folder : {"home", "calendars", "preferences"}) {
        fs::create_directory(m_folder / folder);
    }
    m_environment = {{"HOME", path("home").string()},
                     {"PATH", "/usr/bin:/bin"},
                     {"LANG", "en_US.UTF-8"},
                     {"TZ", "UTC"}};
    // Sanitizers report errors only.
    m_environment["LSAN_OPTIONS"] = "print_suppressions=0";
    if (const char* options = std::getenv("TSAN_OPTIONS")) {
        m_environment["TSAN_OPTIONS"] = options;
    }
}

CommandTest::~CommandTest() {
    std::error_code error;
    fs::remove_all(m_folder, error);
}

RunResult CommandTest::run(const std::vector<std::string>& arguments) const {
    return spawnAndRead(QUORVEL_PROGRAM, arguments, m_environment, m_standardInput, {});
}

RunResult CommandTest::runProgram(const std::string& program,
                                  const std::vector<std::string>& arguments) const {
    return spawnAndRead(program, arguments, m_environment, m_standardInput, {});
}

RunResult CommandTest::runInto(const std::string& outputPath,
                               const std::vector<std::string>& arguments) const {
    return spawnAndRead(QUORVEL_PROGRAM, arguments, m_environment, m_standardInput, outputPath);
}

void CommandTest::addMissing(std::vector<std::string>& arguments) const {
    const auto add = [&arguments](const std::string& option, const std::string& value) {
        if (std::ranges::find(arguments, option) == arguments.end()) {
            arguments.insert(arguments.end(), {option, value});
        }
    };
    add("--calendars", calendars());
    add("--preferences", preferences());
    add("--now", "2026-03-10T10:00:00Z");
    add("--timezone", "UTC");
    add("--locale", "en_GB");
}

RunResult CommandTest::runHere(std::vector<std::string> arguments) const {
    addMissing(arguments);
    return run(arguments);
}

pid_t CommandTest::startHere(std::vector<std::string> arguments,
                             const std::string& outputPath) const {
    addMissing(arguments);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputPath.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const pid_t process = spawn(QUORVEL_PROGRAM, arguments, m_environment, actions);
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

fs::path CommandTest::write(const std::string& name, std::string_view text) const {
    const fs::path file = path(name);
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    return file;
}

void CommandTest::writeCalendar(const std::string& name, const std::string& events) const {
    write("calendars/" + name + ".ics",
          "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Test//EN\r\nX-WR-CALNAME:" + name +
              "\r\nX-APPLE-CALENDAR-COLOR:#336699\r\n" + events + "END:VCALENDAR\r\n");
}

void CommandTest::writeSettings(const std::string& entries) const {
    write("preferences/org.quorvel.quorvelprefs.plist",
          propertyList("<dict>" + entries + "</dict>"));
}

void CommandTest::writeSelection(const std::vector<std::string>& identifiers) const {
    std::string inside;
    for (const std::string& identifier : identifiers) {
        inside += "<string>" + identifier + "</string>";
    }
    write("preferences/org.quorvel.quorvel.calendars.plist",
          propertyList("<array>" + inside + "</array>"));
}

std::vector<std::string> CommandTest::files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(m_folder)) {
        if (!entry.is_directory()) {
            names.push_back(fs::relative(entry.path(), m_folder).string());
        }
    }
    std::ranges::sort(names);
    return names;
}

std::string event(const std::string& uid, const std::string& title, const std::string& times,
                  const std::string& location) {
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:" + title +
           "\r\n" + times + "\r\n" + (location.empty() ? "" : "LOCATION:" + location + "\r\n") +
           "END:VEVENT\r\n";
}

std::string propertyList(const std::string& inside) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + inside +
           "</plist>\n";
}

std::vector<Json> viewsOfClass(const Json& view, const std::string& className) {
    std::vector<Json> found;
    if (view.at("class") == className) {
        found.push_back(view);
    }
    for (const Json& subview : view.at("subviews")) {
        const std::vector<Json> nested = viewsOfClass(subview, className);
        found.insert(found.end(), nested.begin(), nested.end());
    }
    return found;
}

std::map<int, Json> cellsByRow(const Json& document) {
    std::map<int, Json> cells;
    for (const Json& cell : viewsOfClass(document.at("view"), "QVL_UITableViewCell")) {
        if (!cell.at("row").is_null()) {
            cells.emplace(cell.at("row").get<int>(), cell);
        }
    }
    return cells;
}

Json tableOf(const Json& document) {
    return viewsOfClass(document.at("view"), "UITableView").at(0);
}

} // namespace quorvel::app
