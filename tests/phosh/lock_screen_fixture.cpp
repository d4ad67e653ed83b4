#include "tests/phosh/lock_screen_fixture.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>

namespace quorvel::phosh {

namespace fs = std::filesystem;
using window::becomesTrue;
using window::Picture;

namespace {

constexpr double patience = 30; // seconds

std::string utcText(std::time_t instant) {
    std::tm parts{};
    gmtime_r(&instant, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts);
    return text.data();
}

} // namespace

std::string eventsAfter(std::time_t now, int count, const std::string& title) {
    constexpr std::time_t minute = 60;
    const std::time_t first = now / minute * minute + 30 * minute;
    std::string events;
    for (int i = 0; i < count; ++i) {
        const std::time_t start = first + i * 20 * minute;
        events += "BEGIN:VEVENT\r\nUID:event-" + std::to_string(i) + "\r\nSUMMARY:" + title + " " +
                  std::to_string(i) + "\r\nDTSTART:" + utcText(start) +
                  "\r\nDTEND:" + utcText(start + 10 * minute) + "\r\nEND:VEVENT\r\n";
    }
    return events;
}

std::string eventsFromNow(int count, const std::string& title) {
    return eventsAfter(std::time(nullptr), count, title);
}

PhoshOptions withPlugin() {
    const char* measured = std::getenv("QUORVEL_TEST_PLUGINS"); // of another build
    return {measured != nullptr ? measured : QUORVEL_PLUGIN_FOLDER,
            {"quorvel"},
            {{"GSETTINGS_SCHEMA_DIR", QUORVEL_SCHEMAS}}};
}

bool lockTurnAndUnlock(PhoshSession& session) {
    if (!session.lock()) {
        return false;
    }
    session.drag({40, 220}, {330, 220}, 6);
    window::rest(0.2);
    return session.unlock() && session.isShellAlive();
}

ProcessFigures settledFigures(const PhoshSession& session) {
    ProcessFigures last = session.shellFigures();
    double since = window::secondsNow();
    becomesTrue(patience, [&] {
        const ProcessFigures next = session.shellFigures();
        if (next.threads != last.threads || next.descriptors != last.descriptors ||
            next.fileWatches != last.fileWatches) {
            since = window::secondsNow();
        }
        last = next;
        return window::secondsNow() - since > 2;
    });
    return last;
}

LockScreenTest::LockScreenTest()
    : m_session(withPlugin()) {
    fs::create_directories(m_session.path("home/.local/share/calendars"));
    fs::create_directories(m_session.path("home/.config/quorvel/Preferences"));
    installHandler();
}

void LockScreenTest::installHandler() const {
    std::ofstream(m_session.path("home/.local/share/applications/handler.desktop"))
        << "[Desktop Entry]\nType=Application\nName=Handler\nExec=" << RECORDER << ' '
        << m_session.path("opened").string()
        << " 0 %u\nMimeType=x-scheme-handler/x-apple-calevent;\n";
    std::ofstream(m_session.path("home/.config/mimeapps.list"))
        << "[Default Applications]\nx-scheme-handler/x-apple-calevent=handler.desktop\n";
}

void LockScreenTest::writeCalendar(const std::string& name, const std::string& events) const {
    std::ofstream(m_session.path("home/.local/share/calendars/" + name))
        << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
        << events << "END:VCALENDAR\r\n";
}

void LockScreenTest::writeSettings(const std::string& content) const {
    std::ofstream(m_session.path("home/.config/quorvel/Preferences/org.quorvel.quorvelprefs.plist"))
        << content;
}

void LockScreenTest::writeShellSettings(const std::string& line) {
    m_session.addSettings("[org/quorvel/shell]\n" + line + "\n");
}

void LockScreenTest::startAndTurn() {
    m_session.start();
    ASSERT_TRUE(lockAndTurn()) << m_session.shellLog();
}

bool LockScreenTest::lockAndTurn() {
    return m_session.lock() && m_session.turnToWidgets();
}

Picture LockScreenTest::agenda() const {
    return m_session.steadyScreen();
}

void LockScreenTest::pull(int row) const {
    const Position from = AgendaPage::row(row);
    m_session.drag(from, {from.x + 280, from.y});
}

std::vector<std::string> LockScreenTest::opened() const {
    std::ifstream file(m_session.path("opened"), std::ios::binary);
    std::vector<std::string> links;
    for (std::string line; std::getline(file, line);) {
        links.push_back(line.substr(0, line.find('\0')));
    }
    return links;
}

bool LockScreenTest::opensLinks(std::size_t count) const {
    return becomesTrue(patience, [&] { return opened().size() >= count; });
}

} // namespace quorvel::phosh
