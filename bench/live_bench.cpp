// What a presentation costs inside a process that lives, over calendars on disk:
//   live_bench DIR
// DIR holds calendars as make_calendars writes them; one of them is changed and put back. Prints
// medians: of presentations with nothing changed, and of those after one event was edited.

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
#include "hosting/quorvel_view_controller_new.h"
#include "platform/ui/ui_window.h"

namespace {

using namespace quorvel;
using namespace quorvel::platform;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr NSDate now{794829600}; // 2026-03-10 10:00:00 UTC

freedesktop::FreedesktopOptions optionsFor(const std::string& folder) {
    freedesktop::FreedesktopOptions options;
    options.timeZone = freedesktop::TimeZone::named("Europe/Berlin");
    options.locale = "en_GB";
    options.fontFamily = "Inter";
    options.dataFolder = DATA_FOLDER;
    options.preferencesFolder = PREFERENCES_FOLDER;
    options.calendars = {freedesktop::CalendarSource::at(folder)};
    options.now = now;
    return options;
}

class Widget {
public:
    explicit Widget(const std::string& folder)
        : m_platform(optionsFor(folder))
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
        for (const auto& item : static_cast<QuorvelView&>(*m_controller->view()).items()) {
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

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: live_bench DIR\n");
        return 2;
    }
    constexpr int unchangedRounds = 51;
    constexpr int editedRounds = 11;
    std::this_thread::sleep_for(std::chrono::milliseconds(2100)); // until the files are settled
    Widget widget(argv[1]);
    const double first = widget.present();
    if (widget.titles().empty()) {
        std::fprintf(stderr, "live_bench: nothing is shown\n");
        return 1;
    }
    std::vector<double> unchanged;
    for (int i = 0; i < unchangedRounds; ++i) {
        unchanged.push_back(widget.present());
    }
    std::vector<double> edited;
    const OneEdit edit(argv[1], widget.titles().front());
    for (int i = 0; i < editedRounds; ++i) {
        const char letter = static_cast<char>('A' + i);
        edit.edit(letter);
        edited.push_back(widget.present());
        const auto titles = widget.titles();
        const bool isShown = std::any_of(titles.begin(), titles.end(), [&](const auto& title) {
            return !title.empty() && title.front() == letter;
        });
        if (!isShown) {
            std::fprintf(stderr, "live_bench: the edited event is not shown\n");
            return 1;
        }
    }
    std::printf("first %.3f ms\nunchanged %.3f ms\nedited %.3f ms\n", first, median(unchanged),
                median(edited));
    return 0;
}
