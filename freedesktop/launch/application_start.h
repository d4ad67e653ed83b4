// Starts an installed application, or has the session bus activate it. For this folder alone.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gio/gdesktopappinfo.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop::launch {

using EntryHandle = ObjectHandle<GDesktopAppInfo>;

// "org.example.App.desktop"; empty where the entry has no name.
std::string nameOf(GDesktopAppInfo* entry);

// The program and its first arguments, as the entry has them. Absent where its line is none.
std::optional<std::vector<std::string>> commandOf(GDesktopAppInfo* entry,
                                                  const std::optional<std::string>& link);

// What an application is given.
struct Opening {
    std::optional<std::string> link;
    std::vector<std::string> arguments; // with any, the program is started, not activated
};

// A start that waits for a reply. Once it is gone nothing more is done, and nothing called.
class StartUnderWay {
public:
    virtual ~StartUnderWay() = default;
};

// Why it could not be started; empty where it was, or where it has taken the link.
using StartEnded = std::function<void(const std::string& problem)>;

// Never waits, and there is no shell on the way. An application that the bus can activate is asked
// over the bus; where there is no bus, or the bus does not know it, its program is started.
// `ended` is called once: before this returns, and then it returns null; else while the default
// main context runs, after so many seconds at the latest.
std::shared_ptr<StartUnderWay> startApplication(EntryHandle entry, Opening opening, double seconds,
                                                StartEnded ended);

} // namespace quorvel::freedesktop::launch
