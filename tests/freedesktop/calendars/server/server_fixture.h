// A real calendar server on the test's own bus: calendars made and filled by its library, and its
// processes stopped and ended by their own ids.
#pragma once

#include <csignal>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <libecal/libecal.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::testing_eds {

// A calendar as the user makes it in a calendar application.
struct NewCalendar {
    std::string identifier;
    std::string title;
    std::string colour;
    bool isSelected = true;
    bool isEnabled = true;
};

// Lines are parted by '|'.
std::string eventText(std::string lines);

// The processes of the server, as the bus knows them.
std::vector<pid_t> registryProcess();
std::vector<pid_t> factoryProcesses(); // those that hold the calendars

class ServerTest : public ::testing::Test {
protected:
    ServerTest();
    ~ServerTest() override; // with all calendars that it made

    void addCalendar(const NewCalendar& calendar);
    void changeCalendar(const std::string& identifier, const std::function<void(ESource*)>& change);
    void removeCalendar(const std::string& identifier);
    void add(const std::string& calendar, const std::string& event);
    void addZone(const std::string& calendar, const std::string& definition);
    // One occurrence of a repeating event, or the event itself.
    void modify(const std::string& calendar, const std::string& event, ECalObjModType what);
    void remove(const std::string& calendar, const std::string& uid);
    // Lets go of the server's side of all calendars.
    void disconnect();

    // Until the test is over, or it goes on.
    void stop(const std::vector<pid_t>& processes);
    void goOn();
    void kill(const std::vector<pid_t>& processes);

private:
    ECalClient* client(const std::string& calendar);
    ESourceRegistry* registry();
    void removeEvents(const std::string& calendar);

    freedesktop::ObjectHandle<ESourceRegistry> m_registry;
    std::map<std::string, freedesktop::ObjectHandle<ECalClient>> m_clients;
    std::vector<std::string> m_made;
    std::vector<pid_t> m_stopped;
};

} // namespace quorvel::testing_eds
