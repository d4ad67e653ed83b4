// A shell of its own, with SDL and without a toolkit, that shows the agenda: a window as high as
// the rows, which are scrolled, pulled and chosen by key. Links are printed, as every shell opens
// them in its own way.
//
// usage: sdl-host [--picture FILE.bmp] [CALENDAR...]
//   CALENDAR   a .ics file or a folder of them; the user's own calendars where none is named
//   --picture  draws the agenda into a file, and ends

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <SDL.h>

#include "platform/geometry.h"
#include "platform/ns_url.h"
#include "platform/ui_application.h"
#include "shells/embedding/embedded_agenda.h"
#include "shells/host/row_list.h"

using quorvel::embedding::EmbeddedAgenda;
using quorvel::embedding::EmbeddedAgendaOptions;
using quorvel::embedding::PixelBuffer;
using quorvel::platform::CGPoint;
using quorvel::platform::CGSize;

namespace {

constexpr int agendaWidth = 360;         // points
constexpr double greatestHeight = 640;   // points; the list scrolls beyond that
constexpr double wheelStep = 57;         // points that one step of a wheel scrolls
constexpr int longestWait = 50;          // milliseconds; SDL cannot wait for descriptors of others
constexpr int millisecondsPerFrame = 16; // while something moves

struct Arguments {
    std::vector<std::string> calendars;
    std::string picture; // empty: a window
};

// Absent for a usage error.
std::optional<Arguments> parseArguments(int count, char** values) {
    Arguments arguments;
    for (int i = 1; i < count; ++i) {
        const std::string_view value = values[i];
        if (value == "--picture" && i + 1 < count) {
            arguments.picture = values[++i];
        } else if (value.starts_with("--")) {
            return std::nullopt;
        } else {
            arguments.calendars.emplace_back(value);
        }
    }
    return arguments;
}

// The shell's answer to a row that was pulled.
class PrintedLinks final : public quorvel::platform::UIApplication {
public:
    void openURL(const quorvel::platform::NSURL& url) override {
        std::printf("open %s\n", url.absoluteString().c_str());
        std::fflush(stdout);
    }
};

struct WindowDelete {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
};
struct SurfaceDelete {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using WindowHandle = std::unique_ptr<SDL_Window, WindowDelete>;
using SurfaceHandle = std::unique_ptr<SDL_Surface, SurfaceDelete>;

SurfaceHandle makeSurface(int width, int height) {
    return SurfaceHandle(
        SDL_CreateRGBSurfaceWithFormat(0, width, height, 32, SDL_PIXELFORMAT_ARGB8888));
}

void paintInto(EmbeddedAgenda& agenda, SDL_Surface& surface) {
    SDL_LockSurface(&surface);
    agenda.paint(PixelBuffer{static_cast<unsigned char*>(surface.pixels), surface.w, surface.h,
                             surface.pitch});
    SDL_UnlockSurface(&surface);
}

int reportProblem(const std::string& problem) {
    std::fprintf(stderr, "sdl-host: %s\n", problem.c_str());
    return 1;
}

// Calendars that are read slowly arrive after the first presentation.
void waitForCalendars(EmbeddedAgenda& agenda) {
    const double end = EmbeddedAgenda::frameTime() + 1;
    while (EmbeddedAgenda::frameTime() < end) {
        agenda.dispatch();
        SDL_Delay(10);
    }
}

int drawPicture(EmbeddedAgenda& agenda, const std::string& file) {
    agenda.show();
    waitForCalendars(agenda);
    const CGSize size = agenda.wantedSize();
    const SurfaceHandle surface =
        makeSurface(static_cast<int>(size.width), static_cast<int>(size.height));
    if (!surface) {
        return reportProblem(SDL_GetError());
    }
    paintInto(agenda, *surface);
    return SDL_SaveBMP(surface.get(), file.c_str()) == 0 ? 0 : reportProblem(SDL_GetError());
}

// The window: it follows the size of the agenda, and hands on the input.
class Shell {
public:
    Shell(WindowHandle window, EmbeddedAgenda& agenda)
        : m_window(std::move(window))
        , m_agenda(agenda) {}

    void requestPaint() { m_isPaintDue = true; }

    int run() {
        m_agenda.setGreatestHeight(greatestHeight);
        m_agenda.show();
        while (!m_isClosed) {
            handleEvents();
            m_agenda.dispatch();
            if (m_agenda.isMoving()) {
                m_agenda.advance();
                m_isPaintDue = true;
            }
            if (m_isPaintDue) {
                paint();
            }
        }
        m_agenda.hide();
        return 0;
    }

private:
    // A shell that can wait for descriptors waits for those of wakeup() as well.
    int millisecondsToWait() const {
        if (m_agenda.isMoving()) {
            return millisecondsPerFrame;
        }
        const int milliseconds = m_agenda.wakeup().milliseconds;
        return milliseconds < 0 ? longestWait : std::min(milliseconds, longestWait);
    }

    void handleEvents() {
        SDL_Event event;
        if (m_isPaintDue || SDL_WaitEventTimeout(&event, millisecondsToWait()) == 0) {
            if (SDL_PollEvent(&event) == 0) {
                return;
            }
        }
        do {
            handle(event);
        } while (SDL_PollEvent(&event) != 0);
    }

    void handle(const SDL_Event& event) {
        switch (event.type) {
        case SDL_QUIT:
            m_isClosed = true;
            break;
        case SDL_WINDOWEVENT:
            m_isPaintDue = true;
            break;
        case SDL_MOUSEBUTTONDOWN: // also a finger, by SDL's own translation
            if (event.button.button == SDL_BUTTON_LEFT) {
                m_agenda.press(location(event.button.x, event.button.y));
            }
            break;
        case SDL_MOUSEMOTION:
            m_agenda.move(location(event.motion.x, event.motion.y));
            break;
        case SDL_MOUSEBUTTONUP:
            if (event.button.button == SDL_BUTTON_LEFT) {
                m_agenda.lift(location(event.button.x, event.button.y));
            }
            break;
        case SDL_MOUSEWHEEL:
            m_agenda.scroll(location(event.wheel.mouseX, event.wheel.mouseY),
                            -event.wheel.y * wheelStep);
            break;
        case SDL_KEYDOWN:
            handleKey(event.key.keysym.sym);
            break;
        default:
            break;
        }
    }

    void handleKey(SDL_Keycode key) {
        quorvel::shells::RowList& rows = m_agenda.rows();
        const auto focused = rows.focusedRow();
        if (key == SDLK_ESCAPE) {
            m_isClosed = true;
        } else if (key == SDLK_DOWN) {
            rows.focusRow(focused ? *focused + 1 : 0); // ignored below the last row
        } else if (key == SDLK_UP && focused && *focused > 0) {
            rows.focusRow(*focused - 1);
        } else if (key == SDLK_RETURN && focused) {
            rows.runRowAction(*focused);
        }
    }

    static CGPoint location(int x, int y) {
        return {static_cast<double>(x), static_cast<double>(y)};
    }

    void paint() {
        m_isPaintDue = false;
        const CGSize wanted = m_agenda.wantedSize();
        SDL_SetWindowSize(m_window.get(), static_cast<int>(wanted.width),
                          static_cast<int>(wanted.height));
        SDL_Surface* const target = SDL_GetWindowSurface(m_window.get()); // the window's
        if (target == nullptr) {
            return;
        }
        m_agenda.setSize({static_cast<double>(target->w), static_cast<double>(target->h)});
        m_isPaintDue = false; // the new size has requested it again
        const SurfaceHandle picture = makeSurface(target->w, target->h);
        if (picture) {
            paintInto(m_agenda, *picture);
            SDL_BlitSurface(picture.get(), nullptr, target, nullptr);
            SDL_UpdateWindowSurface(m_window.get());
        }
    }

    WindowHandle m_window;
    EmbeddedAgenda& m_agenda;
    bool m_isPaintDue = true;
    bool m_isClosed = false;
};

int showWindow(EmbeddedAgenda& agenda, Shell*& shell) {
    const CGSize size = agenda.wantedSize();
    WindowHandle window(SDL_CreateWindow("Agenda", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                         static_cast<int>(size.width),
                                         static_cast<int>(size.height), 0));
    if (!window) {
        return reportProblem(SDL_GetError());
    }
    Shell own(std::move(window), agenda);
    shell = &own;
    const int status = own.run();
    shell = nullptr;
    return status;
}

int run(const Arguments& arguments) {
    PrintedLinks links;
    Shell* shell = nullptr; // while there is a window
    EmbeddedAgendaOptions options;
    options.calendars = arguments.calendars;
    options.width = agendaWidth;
    options.application = &links;
    options.onChanged = [&shell] {
        if (shell != nullptr) {
            shell->requestPaint();
        }
    };
    auto agenda = EmbeddedAgenda::make(options);
    if (!agenda) {
        return reportProblem(quorvel::message(agenda.error()));
    }
    return arguments.picture.empty() ? showWindow(**agenda, shell)
                                     : drawPicture(**agenda, arguments.picture);
}

} // namespace

int main(int count, char** values) {
    const std::optional<Arguments> arguments = parseArguments(count, values);
    if (!arguments) {
        std::fputs("usage: sdl-host [--picture FILE.bmp] [CALENDAR...]\n", stderr);
        return 2;
    }
    if (SDL_Init(arguments->picture.empty() ? SDL_INIT_VIDEO : 0U) != 0) {
        return reportProblem(SDL_GetError());
    }
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1"); // the press that focuses may begin a pull
    const int status = run(*arguments);
    SDL_Quit();
    return status;
}
