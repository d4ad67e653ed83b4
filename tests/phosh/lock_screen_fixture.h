// The shell's lock screen with our plugin, calendars and settings of the test, and a handler that
// records the links that it opens.
#pragma once

#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/phosh/phosh_session.h"

namespace quorvel::phosh {

// One event every twenty minutes, the first one half an hour after the minute of `now`. Their
// identifiers are "event-0" and so on.
std::string eventsAfter(std::time_t now, int count, const std::string& title);
std::string eventsFromNow(int count, const std::string& title);

// The page of widgets where the list fills it, in points of the screen.
struct AgendaPage {
    static constexpr double firstRow = 92;
    static constexpr double rowHeight = 43;
    static constexpr double aboveRows = 64;
    // The middle of a row, at its left.
    static Position row(int number) { return {60, firstRow + rowHeight * (number + 0.5)}; }
};

class LockScreenTest : public testing::Test {
protected:
    LockScreenTest();

    void writeCalendar(const std::string& name, const std::string& events) const;
    void writeSettings(const std::string& content) const; // the bytes of the property list
    // A line of the plugin's own settings, as GSettings writes it.
    void writeShellSettings(const std::string& line);

    // Starts the shell, locks it, and turns to the page of widgets.
    void startAndTurn();
    bool lockAndTurn();
    // Waits for an agenda to be painted.
    window::Picture agenda() const;
    void pull(int row) const;                // far enough
    std::vector<std::string> opened() const; // links, in order
    bool opensLinks(std::size_t count) const;

    PhoshSession m_session;

private:
    void installHandler() const;
};

PhoshOptions withPlugin(); // of this build, or of the folder $QUORVEL_TEST_PLUGINS
// A round as the user makes it; without waits for pictures. Returns whether the shell did it.
bool lockTurnAndUnlock(PhoshSession& session);
// The figures once no thread of a plugin has work any more.
ProcessFigures settledFigures(const PhoshSession& session);

} // namespace quorvel::phosh
