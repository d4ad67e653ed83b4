// The agenda for a program that has windows of its own, whatever they are made with: the widget on
// the services of Linux. The program supplies pixels, input and a main loop.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <poll.h>

#include "base/result.h"
#include "platform/geometry.h"
#include "platform/ns_date.h"

namespace quorvel::platform {
class HomeScreenShell;
class SystemLog;
class UIApplication;
} // namespace quorvel::platform

namespace quorvel::shells {
class RowList;
} // namespace quorvel::shells

namespace quorvel::embedding {

// All may stay as they are: the agenda is the user's own then.
struct EmbeddedAgendaOptions {
    // .ics files, folders of them, "eds:", "thunderbird:". Empty: the user's calendars.
    std::vector<std::string> calendars;
    std::string preferencesFolder; // with the settings; empty: the user's
    std::string controllerName;    // a class of the bundle; empty: its principal class
    std::string timeZone;   // such as "Europe/Berlin"; empty: the machine's, also once it changes
    std::string locale;     // such as "de_DE"; empty: that of the environment or the session
    std::string fontFamily; // empty: the desktop's
    std::optional<platform::NSDate> now;    // the clock stands there; absent: the system's clock
    std::optional<platform::CGFloat> width; // points; absent: the width that the widget prefers
    platform::CGFloat scale = 1;            // pixels per point
    bool isDark = true;
    // What opens links and applications. Not owned; they outlive the agenda. Null: the desktop's
    // handlers.
    platform::UIApplication* application = nullptr;
    platform::HomeScreenShell* homeScreenShell = nullptr;
    // Receives what the widget and its services log. Null: the system's log.
    std::shared_ptr<platform::SystemLog> log;
    // There is something new to paint, wantedSize() may be another, or something moves: paint soon.
    // Called from inside the methods of the agenda too, never after its destruction. Null: none.
    std::function<void()> onChanged;
};

// 32 bits a pixel in the byte order of the machine, alpha in the highest byte, colours multiplied
// by alpha. Row after row from the top.
struct PixelBuffer {
    unsigned char* data = nullptr; // not owned; aligned to 4 bytes
    int width = 0;                 // pixels
    int height = 0;                // pixels
    int stride = 0;                // bytes from one row to the next, a multiple of 4
};

// When a main loop must call dispatch() again.
struct Wakeup {
    std::vector<pollfd> descriptors; // once one of them is ready
    int milliseconds = -1;           // or after that time; -1: whenever a descriptor is ready
};

// All calls come from the thread that made the agenda. One agenda in a process: the settings of the
// widget are variables of the process. Locations and lengths are points of the agenda's area, times
// seconds of frameTime(). Where memory or threads run out, the standard library throws.
class EmbeddedAgenda {
public:
    // Fails with a sentence for the user: a calendar, time zone, locale or class that does not
    // exist, or an installation without its bundle.
    static Result<std::unique_ptr<EmbeddedAgenda>> make(const EmbeddedAgendaOptions& options);
    ~EmbeddedAgenda();
    EmbeddedAgenda(const EmbeddedAgenda&) = delete;
    EmbeddedAgenda& operator=(const EmbeddedAgenda&) = delete;

    // Presents the agenda, and again by itself while it is shown: at midnight, when an event begins
    // or ends, when calendars, settings, time zone or language change.
    void show();
    void hide();

    // The size that shows all rows, limited to the greatest height; whole points, at least one.
    platform::CGSize wantedSize() const;
    void setGreatestHeight(platform::CGFloat height);
    // The size of the area that the program gives the agenda, which scrolls where it is higher.
    // Until then the area has the wanted size.
    void setSize(platform::CGSize size);
    void setScale(platform::CGFloat scale); // pixels per point
    void setDark(bool isDark);              // the backdrop and the colours on it

    // Replaces all pixels: the backdrop, and on it the agenda from the top left corner. Without
    // effect where the buffer holds no pixels.
    void paint(const PixelBuffer& pixels);

    // The time of the frame clock, in seconds; it only runs forwards.
    static double frameTime();
    // A pointer or a finger, one at a time. Input without its beginning is ignored.
    void press(platform::CGPoint location, double time = frameTime());
    void move(platform::CGPoint location, double time = frameTime());
    void lift(platform::CGPoint location, double time = frameTime());
    void cancelPress(double time = frameTime()); // no action runs
    // A wheel. False where nothing at that point can scroll further.
    bool scroll(platform::CGPoint location, platform::CGFloat distance);
    // While something moves, the program calls advance() and paint() for each frame.
    bool isMoving() const;
    void advance(double time = frameTime());

    // The rows for the keyboard and for screen readers; as old as the agenda.
    shells::RowList& rows();

    // For a program without a main loop of GLib: runs what is due, such as a change of the
    // calendars, and does not wait. One with such a loop, on the default context of the thread,
    // calls neither.
    void dispatch();
    Wakeup wakeup();

private:
    class Parts;
    explicit EmbeddedAgenda(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> m_parts;
};

} // namespace quorvel::embedding
