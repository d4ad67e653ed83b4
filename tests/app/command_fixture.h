// Runs the real program in a home of its own, and reads what it prints and leaves behind.
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
    int status = -1; // of the exit; -1 for a process that a signal ended
    std::string output;
    std::string errors;

    Json json() const { return Json::parse(output); }
    // Steps of an inspected script by their number; 0 is the load.
    Json step(std::size_t index) const { return json().at("steps").at(index); }
};

class CommandTest : public ::testing::Test {
protected:
    CommandTest();
    ~CommandTest() override;

    // The program with these arguments, in UTC, in en_US, and with an empty home.
    RunResult run(const std::vector<std::string>& arguments) const;
    // Another program, named by its file, in the same surroundings.
    RunResult runProgram(const std::string& program,
                         const std::vector<std::string>& arguments) const;
    // With calendars and settings of this test, on 10 March 2026 at 10:00 UTC, a Tuesday.
    RunResult runHere(std::vector<std::string> arguments) const;
    // Standard output goes to that file instead of coming back.
    RunResult runInto(const std::string& outputPath,
                      const std::vector<std::string>& arguments) const;

    // As runHere(), but not waited for: the process. Standard output goes to that file, which need
    // not exist.
    pid_t startHere(std::vector<std::string> arguments, const std::string& outputPath) const;

    std::filesystem::path write(const std::string& name, std::string_view text) const;
    // One calendar file of the folder that runHere() shows; `events` are whole VEVENTs.
    void writeCalendar(const std::string& name, const std::string& events) const;
    // The settings that runHere() uses, as the inside of a property list's dictionary.
    void writeSettings(const std::string& entries) const;
    void writeSelection(const std::vector<std::string>& identifiers) const;

    std::filesystem::path path(const std::string& name) const { return m_folder / name; }
    std::string calendars() const { return path("calendars").string(); }
    std::string preferences() const { return path("preferences").string(); }
    // Every file below the test's folder.
    std::vector<std::string> files() const;

    std::map<std::string, std::string> m_environment;

private:
    void addMissing(std::vector<std::string>& arguments) const;

    std::filesystem::path m_folder;
};

// A VEVENT; `times` are its DTSTART, DTEND and whatever else belongs there, a line each.
std::string event(const std::string& uid, const std::string& title, const std::string& times,
                  const std::string& location = {});
std::string propertyList(const std::string& inside);

// All views of a class, in the tree's order.
std::vector<Json> viewsOfClass(const Json& view, const std::string& className);
// The cells by row.
std::map<int, Json> cellsByRow(const Json& document);
// What the table of an inspected document says.
Json tableOf(const Json& document);

} // namespace quorvel::app
