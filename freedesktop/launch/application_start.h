// Starts an installed application, or activates it over the session bus. Only for this folder.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <gio/gdesktopappinfo.h>

#include "base/result.h"
#include "freedesktop/glib/handles.h"
#include "freedesktop/launch/launch_arguments.h"
#include "freedesktop/launch/process_start.h"

namespace quorvel::freedesktop::launch {

using EntryHandle = ObjectHandle<GDesktopAppInfo>;

// "org.example.App.desktop"; empty if the entry has no name.
std::string nameOf(GDesktopAppInfo* entry);

// Whether a process owns the bus name of the application. False if there is no bus or it does not
// answer. Runs the default main context, for a few seconds at most.
bool isRunning(GDesktopAppInfo* entry);

// The program and its first arguments according to the entry. Absent if its command line is
// invalid.
std::optional<std::vector<std::string>> commandOf(GDesktopAppInfo* entry,
                                                  std::span<const std::string> links);

// A start that waits for a reply. Destroying it abandons the start; nothing is called afterwards.
class PendingStart {
public:
    virtual ~PendingStart() = default;
};

struct StartHandlers {
    // Called once, with success when the program runs or the application has accepted the links.
    std::function<void(const Result<void>& result)> onStarted;
    // For a program that has been started; may be null.
    OnEndedSoon onEndedSoon;
};

// Neither waits nor uses a shell. An application that supports activation is activated over the
// bus; if there is no bus, or the bus does not know the application, its program is started. Calls
// `onStarted` either before it returns, and then it returns null, or later while the default main
// context runs, at the latest after that many seconds.
std::shared_ptr<PendingStart> startApplication(EntryHandle entry, LaunchArguments arguments,
                                               double seconds, StartHandlers handlers);

} // namespace quorvel::freedesktop::launch
