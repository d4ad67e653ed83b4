// The command line as plain values.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/result.h"

namespace quorvel::app {

enum class Command { agenda, snapshot, calendars, inspect, show, settings };

struct CommandLine {
    Command command = Command::agenda;
    bool wantsHelp = false;    // about the command, or about the program where there is no command
    bool wantsVersion = false; // then all other members are ignored
    bool hasCommand = false;

    std::vector<std::string> calendars;
    std::optional<double> calendarWait;      // seconds, for the first presentation
    std::optional<double> laterCalendarWait; // seconds, for each later one
    std::optional<std::string> preferences;
    bool sample = false;
    std::string controller;      // empty: the bundle's principal class
    std::optional<double> width; // points
    std::optional<std::string> now;
    std::optional<std::string> timeZone;
    std::optional<std::string> locale;
    std::optional<std::string> font;
    std::optional<double> foundationVersion;
    std::optional<std::string> bundle;
    std::optional<std::string> log;
    bool verbose = false;
    bool noCache = false;

    bool json = false;                     // agenda, calendars
    std::string output;                    // the file of snapshot, the output of show's layer
    std::optional<double> scale;           // snapshot
    std::optional<double> textScale;       // snapshot
    std::optional<std::string> appearance; // snapshot
    std::optional<std::string> background; // snapshot, show
    bool decorated = false;                // show
    std::optional<std::string> layer;      // show
    std::optional<std::string> anchor;     // show
    std::optional<std::string> margin;     // show
    std::vector<std::string> steps;        // inspect
    bool refreshes = false;                // calendars

    // settings
    std::vector<std::string> settingsWords; // the arguments behind the command
    std::vector<std::string> resetSettings;
    bool checksSettings = false;
    std::vector<std::string> chosenCalendars; // titles or identifiers
    bool choosesAll = false;                  // of the calendars
    bool followsDesktop = false;              // in the choice of calendars
    std::optional<std::string> subscribe;     // the address of a calendar
    std::optional<std::string> unsubscribe;   // its address or title
    std::optional<std::string> title;         // of the calendar to subscribe to
    std::optional<std::string> colour;        // likewise
    std::optional<std::string> user;          // for its server
    bool readsPassword = false;               // from standard input
};

// Options may precede and follow the command. An error is wrong usage.
Result<CommandLine> parseCommandLine(int argc, const char* const* argv);

} // namespace quorvel::app
