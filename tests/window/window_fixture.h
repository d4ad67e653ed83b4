// Runs `quorvel show` on a private display, with calendars, settings and a desktop of the test, and
// a handler that records the links that it opens.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/window/child_process.h"
#include "tests/window/virtual_display.h"

namespace quorvel::window {

class WindowTest : public testing::Test {
protected:
    WindowTest();
    ~WindowTest() override;

    // Three events of 10 March 2026, from 11:00 to 12:00, 13:00 and 15:00 UTC.
    void writeThreeEvents() const;
    void writeCalendar(const std::string& events) const;  // replaces the file
    void writeSettings(const std::string& entries) const; // likewise
    void installHandler(const std::string& entryName, const std::string& type, int milliseconds = 0,
                        const std::string& moreArguments = "") const;
    std::filesystem::path path(const std::string& name) const { return m_folder / name; }

    // The clock starts at `now` and runs. Returns when the window has the keyboard focus and its
    // picture no longer changes.
    void show(const std::vector<std::string>& more = {}, const std::string& now = tenOClock);
    void showWith(const std::vector<std::string>& arguments); // these arguments alone
    // Ends the program, and waits until its windows are gone.
    void endProgram();
    // The picture of a window that is opened at that instant, and closed afterwards.
    Picture pictureAt(const std::string& now);
    // Opens the window shortly before the end of a minute of 10 March, such as "23:59", but early
    // enough for it to show the expected picture first, even where it starts slowly.
    void showBeforeEndOf(const std::string& minute, const Picture& expected);
    // The output of another command for the same calendars, settings and instant.
    std::string printed(const std::string& command, const std::vector<std::string>& more) const;
    // The content of the window, without its frame and header. Likewise, the coordinates of input
    // are those of the content.
    Picture picture() const;
    Picture wholePicture() const; // with frame and header
    // Waits until the window is painted and its picture no longer changes.
    Picture steadyPicture() const;
    bool pictureBecomes(const Picture& wanted, double seconds) const;
    bool pictureChangesFrom(const Picture& old, double seconds) const;

    // Sends input: the arguments of xdotool.
    void input(const std::vector<std::string>& words) const;
    bool tryInput(const std::vector<std::string>& words) const; // false: the window is gone
    void press(int x, int y) const;
    void moveTo(int x, int y) const;
    void moveToHeader(int x) const;
    void release() const;
    void drag(int fromX, int fromY, int toX, int toY) const; // rests before the release
    void key(const std::string& name) const;
    void click(int button) const; // at the pointer
    // Waits for a further window, such as a menu or a dialog; 0 where none appears.
    unsigned long secondWindow() const;
    // The window's number for input().
    std::string window() const { return std::to_string(m_window); }

    std::vector<std::string> opened() const; // links, in order
    bool opensLinks(std::size_t count) const;
    std::vector<pid_t> handlers() const; // that still run
    std::string errors() const;          // the standard error of the program

    std::map<std::string, std::string> m_environment;
    std::unique_ptr<VirtualDisplay> m_display;
    std::unique_ptr<ChildProcess> m_program;

private:
    static constexpr const char* tenOClock = "2026-03-10T10:00:00Z";

    std::vector<std::string> commonArguments(const std::string& now) const;

    int frameWidth() const;
    int headerHeight() const;
    int scale() const;

    std::filesystem::path m_folder;
    unsigned long m_window = 0;
};

// The pointer's distance that moves a row 320 points wide by `offset`, including the slop of 10
// points.
int distanceForOffset(double offset);

// A VEVENT from one time to another, written as 20260310T110000Z.
std::string event(const std::string& uid, const std::string& title, const std::string& start,
                  const std::string& end);

} // namespace quorvel::window
