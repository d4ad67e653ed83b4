// What a presentation costs inside a process that lives, over calendars on disk:
//   live_bench DIR INDEX
// DIR holds calendars as make_calendars writes them; one of them is changed and put back. INDEX is
// a folder for the index. Prints medians: of presentations with nothing changed, of those after one
// event was edited, and of the first edit after a start from the index.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "agenda/quorvel_view.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "hosting/quorvel_view_controller_new.h"
#include "platform/ui/ui_window.h"

namespace {

using namespace quorvel;
using namespace quorvel::platform;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr NSDate now{794829600}; // 2026-03-10 10:00:00 UTC

freedesktop::FreedesktopOptions optionsFor(const std::string& folder, const std::string& index) {
    freedesktop::FreedesktopOptions options;
    options.timeZone = freedesktop::namedTimeZone("Europe/Berlin");
    options.locale = "en_GB";
    options.fontFamily = "Inter";
    options.makeRendering = freedesktop::makeLinkedRendering;
    options.dataFolder = DATA_FOLDER;
    options.preferencesFolder = PREFERENCES_FOLDER;
    options.calendars = {freedesktop::CalendarSource::at(folder)};
    options.calendarIndexFolder = index;
    options.now = now;
    return options;
}

class Widget {
public:
    explicit Widget(const std::string& folder, const std::string& index = {})
        : m_platform(optionsFor(folder, index))
        , m_controller(std::make_shared<QuorvelViewControllerNew>(m_platform.platform())) {
        m_window =
            std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 568), m_platform.platform().screen);
        m_window->addSubview(m_controller->view());
        m_controller->view()->setFrame(m_window->bounds());
    }

    double present() { // milliseconds
        const auto before = Clock::now();
        m_controller->hostWillPresent();
        m_window->layoutIfNeeded();
        m_controller->hostDidPresent();
        return std::chrono::duration<double, std::milli>(Clock::now() - before).count();
    }
    std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const auto& item : *static_cast<QuorvelView&>(*m_controller->view()).items()) {
            result.push_back(item->title().value_or(""));
        }
        return result;
    }

private:
    freedesktop::FreedesktopPlatform m_platform;
    std::shared_ptr<QuorvelViewControllerNew> m_controller;
    std::shared_ptr<UIWindow> m_window;
};

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::string contentOf(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

void setContent(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// The title of the first event that is shown gets another letter.
class OneEdit {
public:
    OneEdit(const fs::path& folder, const std::string& title) {
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().extension() == ".ics") {
                m_path = entry.path();
                m_before = contentOf(m_path);
                m_at = m_before.find("SUMMARY:" + title + "\r\n");
                if (m_at != std::string::npos) {
                    return;
                }
            }
        }
        std::fprintf(stderr, "live_bench: no event '%s'\n", title.c_str());
        std::exit(1);
    }
    ~OneEdit() { setContent(m_path, m_before); }
    OneEdit(const OneEdit&) = delete;
    OneEdit& operator=(const OneEdit&) = delete;

    void edit(char letter) const {
        std::string text = m_before;
        text[m_at + 8] = letter;
        setContent(m_path, text);
    }

private:
    fs::path m_path;
    std::string m_before;
    std::size_t m_at = 0;
};

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "live_bench: %s\n", what);
        std::exit(1);
    }
}

// Until what was written last is taken to be settled.
void letFilesSettle() {
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
}

double presentEdit(Widget& widget, const OneEdit& edit, char letter) {
    edit.edit(letter);
    const double milliseconds = widget.present();
    const auto titles = widget.titles();
    require(
        std::any_of(titles.begin(), titles.end(),
                    [&](const auto& title) { return !title.empty() && title.front() == letter; }),
        "the edited event is not shown");
    return milliseconds;
}

struct Times {
    double first = 0;
    std::vector<double> unchanged;
    std::vector<double> edited;
    std::string title; // of an event that is shown
};

Times measureLife(const std::string& folder) {
    constexpr int unchangedRounds = 51;
    constexpr int editedRounds = 11;
    Widget widget(folder);
    Times times;
    times.first = widget.present();
    require(!widget.titles().empty(), "nothing is shown");
    times.title = widget.titles().front();
    for (int i = 0; i < unchangedRounds; ++i) {
        times.unchanged.push_back(widget.present());
    }
    const OneEdit edit(folder, times.title);
    for (int i = 0; i < editedRounds; ++i) {
        times.edited.push_back(presentEdit(widget, edit, static_cast<char>('A' + i)));
    }
    return times;
}

std::vector<double> measureFirstEdits(const std::string& folder, const std::string& index,
                                      const std::string& title) {
    constexpr int rounds = 5;
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        letFilesSettle();
        Widget(folder, index).present(); // makes the index
        Widget widget(folder, index);
        widget.present();
        const OneEdit edit(folder, title);
        times.push_back(presentEdit(widget, edit, static_cast<char>('A' + i)));
    }
    return times;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: live_bench DIR INDEX\n");
        return 2;
    }
    letFilesSettle();
    const Times times = measureLife(argv[1]);
    std::printf("first %.3f ms\nunchanged %.3f ms\nedited %.3f ms\nindexed %.3f ms\n", times.first,
                median(times.unchanged), median(times.edited),
                median(measureFirstEdits(argv[1], argv[2], times.title)));
    return 0;
}
