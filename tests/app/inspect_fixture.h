// Runs scripts of host events with the real program, and writes entries of its settings.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/app/command_fixture.h"

namespace quorvel::app {

class InspectCommandTest : public CommandTest {
protected:
    Json inspected(const std::vector<std::string>& steps,
                   const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"inspect"};
        for (const std::string& step : steps) {
            arguments.insert(arguments.end(), {"--do", step});
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        const RunResult result = runHere(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.json();
    }
    Json settingsWith(const std::string& entries) const {
        writeSettings(entries);
        return inspected({}).at("settings");
    }
    // The step that changes to another folder of settings, which it writes.
    std::string otherSettings(const std::string& name, const std::string& entries) const {
        write(name + "/org.quorvel.quorvelprefs.plist",
              propertyList("<dict>" + entries + "</dict>"));
        return "preferences:" + path(name).string();
    }
    void writeEvents(int count, const std::string& location = {}) const {
        std::string events;
        for (int number = 0; number < count; ++number) {
            events += event("e" + std::to_string(number), "Event " + std::to_string(number),
                            "DTSTART:20260310T1" + std::to_string(number) + "3000Z", location);
        }
        writeCalendar("Work", events);
    }
};

inline std::string integer(const std::string& key, int value) {
    return "<key>" + key + "</key><integer>" + std::to_string(value) + "</integer>";
}

inline std::string flag(const std::string& key, bool value) {
    return "<key>" + key + "</key>" + (value ? "<true/>" : "<false/>");
}

inline std::string text(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

inline Json labelOf(const Json& cell, std::size_t index) {
    return viewsOfClass(cell, "UILabel").at(index); // title, location, caption
}

} // namespace quorvel::app
