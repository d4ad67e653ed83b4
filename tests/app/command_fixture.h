// Runs the real program in a private home folder, and reads its output and its files.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/types.h>

namespace quorvel::app {

using Json = nlohmann::json;

struct RunResult {
    int status = -1; // the exit status; -1 where a signal ended the process
    std::string output;
    std::string errors;

    Json json() const { return Json::parse(output); }
    // The entry of a step in a document of `inspect`; 0 is the load.
    Json step(std::size_t index) const { return json().at("steps").at(index); }
};

class CommandTest : public ::testing::Test {
protected:
    CommandTest();
    ~CommandTest() override;

    // Runs the program with these arguments, in UTC, in en_US, and with an empty home folder.
    RunResult run(const std::vector<std::string>& arguments) const;
    // Runs another program, by its path, in the same environment.
    RunResult runProgram(const std::string& program,
                         const std::vector<std::string>& arguments) const;
    // Adds the calendars and settings of this test; now is Tuesday, 10 March 2026, 10:00 UTC.
    RunResult runHere(std::vector<std::string> arguments) const;
    // Sends standard output to that file instead of returning it.
    RunResult runInto(const std::string& outputPath,
                      const std::vector<std::string>& arguments) const;

    // As runHere(), but returns the process without waiting for it. Sends standard output to that
    // file, which it creates.
    pid_t startHere(std::vector<std::string> arguments, const std::string& outputPath) const;

    std::filesystem::path write(const std::string& name, std::string_view text) const;
    // Writes a calendar for runHere(); `events` are complete VEVENTs.
    void writeCalendar(const std::string& name, const std::string& events) const;
    // Writes the settings for runHere(); `entries` are those of the property list's dictionary.
    void writeSettings(const std::string& entries) const;
    void writeSelection(const std::vector<std::string>& identifiers) const;

    std::filesystem::path path(const std::string& name) const { return m_folder / name; }
    std::string calendars() const { return path("calendars").string(); }
    std::string preferences() const { return path("preferences").string(); }
    // Every file below the test's folder.
    std::vector<std::string> files() const;

    std::map<std::string, std::string> m_environment;
    std::string m_standardInput = "/dev/null"; // the file that programs get as standard input

private:
    void addMissing(std::vector<std::string>& arguments) const;

    std::filesystem::path m_folder;
};

// A VEVENT; `times` are the lines of DTSTART, DTEND and further properties.
std::string event(const std::string& uid, const std::string& title, const std::string& times,
                  const std::string& location = {});
std::string propertyList(const std::string& inside);

// All views of a class, in the tree's order.
std::vector<Json> viewsOfClass(const Json& view, const std::string& className);
// The cells of the rows, by row.
std::map<int, Json> cellsByRow(const Json& document);
// The table in a document of `inspect`.
Json tableOf(const Json& document);

} // namespace quorvel::app
