// What a presentation of a calendar server's events costs beside the bare calls of its library that
// expand the same two days, both with a client that is held:
//   data_server_bench COLLECTION MODULE [ROUNDS]
// Fills the server with the collection's calendars first: to be run in a session of its own.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <libecal/libecal.h>

#include "freedesktop/calendars/server/bus_sources_search.h"
#include "freedesktop/calendars/server/started_data_server.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/dates/instant_text.h"

namespace {

namespace fs = std::filesystem;
using namespace quorvel;
using freedesktop::ServerCalendarStores;
using freedesktop::TimeZone;

constexpr auto withoutWaiting = static_cast<guint32>(-1);

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "data_server_bench: %s\n", what.c_str());
    std::exit(EXIT_FAILURE);
}

void check(const GError* error) {
    if (error != nullptr) {
        fail(error->message);
    }
}

ECalClient* makeCalendar(const std::string& name) {
    GError* error = nullptr;
    ESourceRegistry* const registry = e_source_registry_new_sync(nullptr, &error);
    check(error);
    ESource* source = e_source_new_with_uid(name.c_str(), nullptr, &error);
    check(error);
    e_source_set_display_name(source, name.c_str());
    e_source_set_parent(source, "local-stub");
    e_source_backend_set_backend_name(
        E_SOURCE_BACKEND(e_source_get_extension(source, E_SOURCE_EXTENSION_CALENDAR)), "local");
    e_source_registry_commit_source_sync(registry, source, nullptr, &error);
    check(error);
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        source = e_source_registry_ref_source(registry, name.c_str());
    } while (source == nullptr);
    EClient* const client = e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
                                                      withoutWaiting, nullptr, &error);
    check(error);
    return E_CAL_CLIENT(client);
}

// The calendars stay as long as the process.
ECalClient* importFolder(const fs::path& folder, std::size_t& count) {
    ECalClient* const client = makeCalendar(folder.filename().string());
    GSList* events = nullptr;
    for (const auto& file : fs::recursive_directory_iterator(folder)) {
        if (file.path().extension() != ".ics") {
            continue;
        }
        std::ifstream stream(file.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        ICalComponent* const whole = i_cal_component_new_from_string(text.c_str());
        for (ICalComponent* event =
                 i_cal_component_get_first_component(whole, I_CAL_VEVENT_COMPONENT);
             event != nullptr;
             event = i_cal_component_get_next_component(whole, I_CAL_VEVENT_COMPONENT)) {
            events = g_slist_prepend(events, i_cal_component_clone(event));
            ++count;
        }
    }
    GError* error = nullptr;
    GSList* identifiers = nullptr;
    e_cal_client_create_objects_sync(client, events, E_CAL_OPERATION_FLAG_NONE, &identifiers,
                                     nullptr, &error);
    check(error);
    return client;
}

double milliseconds(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Writes one event of the calendar anew, with another title.
void editOneEvent(ECalClient* client, int round) {
    GSList* list = nullptr;
    GError* error = nullptr;
    e_cal_client_get_object_list_sync(client, "(not (has-recurrences?))", &list, nullptr, &error);
    check(error);
    auto* const event = I_CAL_COMPONENT(list->data);
    i_cal_component_set_summary(event, ("Edited " + std::to_string(round)).c_str());
    e_cal_client_modify_object_sync(client, event, E_CAL_OBJ_MOD_ALL, E_CAL_OPERATION_FLAG_NONE,
                                    nullptr, &error);
    check(error);
    g_slist_free_full(list, g_object_unref);
}

gboolean countInstance(ICalComponent*, ICalTime*, ICalTime*, gpointer count, GCancellable*,
                       GError**) {
    ++*static_cast<std::size_t*>(count);
    return TRUE;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        fail("usage: data_server_bench COLLECTION MODULE [ROUNDS]");
    }
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 15;
    std::vector<ECalClient*> clients;
    std::size_t events = 0;
    for (const auto& folder : fs::directory_iterator(argv[1])) {
        clients.push_back(importFolder(folder.path(), events));
    }

    const auto zone = freedesktop::namedTimeZone("Europe/Berlin");
    const platform::NSDate from = *freedesktop::parseInstant("2026-03-10T00:00", *zone);
    const platform::NSDate to = *freedesktop::parseInstant("2026-03-12T00:00", *zone);
    std::size_t instances = 0;
    const auto bare = [&] {
        instances = 0;
        for (ECalClient* const client : clients) {
            e_cal_client_generate_instances_sync(
                client, static_cast<time_t>(platform::timeIntervalSince1970(from)),
                static_cast<time_t>(platform::timeIntervalSince1970(to)), nullptr, countInstance,
                &instances);
        }
    };
    const auto makeStores = [&] {
        return std::make_unique<ServerCalendarStores>(
            std::make_unique<freedesktop::eds::StartedDataServer>(
                argv[2], std::make_unique<freedesktop::eds::BusSourcesSearch>()),
            zone,
            [](const freedesktop::CalendarProblem& problem) {
                fail(problem.file + ": " + problem.what.english());
            },
            freedesktop::DataServerWaits{60, 60});
    };
    const auto asked = makeStores();
    const auto followed = makeStores();
    std::atomic<int> changes = 0;
    followed->setChangedHandler([&changes] { ++changes; });
    const auto waitForChange = [&changes](int before) {
        while (changes == before) {
            g_main_context_iteration(nullptr, FALSE); // as the loop of a host that shows a window
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    };
    std::size_t shown = 0;
    const auto present = [&](ServerCalendarStores& stores) {
        const auto store = stores.makeEventStore();
        shown = store->eventsMatchingPredicate({from, to, store->calendars()}).size();
    };

    bare();
    present(*asked);
    present(*followed);
    std::vector<double> times[4];
    for (int round = 0; round < rounds; ++round) {
        times[0].push_back(milliseconds(bare));
        times[1].push_back(milliseconds([&] { present(*asked); }));
        times[2].push_back(milliseconds([&] { present(*followed); }));
        const int changesBefore = changes;
        editOneEvent(clients.front(), round);
        waitForChange(changesBefore);
        times[3].push_back(milliseconds([&] { present(*followed); }));
    }
    const double base = median(times[0]);
    std::fprintf(stderr, "%zu events in %zu calendars; %zu instances by the library, %zu shown\n",
                 events, clients.size(), instances, shown);
    std::printf("\n| in Evolution Data Server, clients held | median | ratio | target |\n"
                "| --- | --- | --- | --- |\n");
    std::printf("| the bare library calls | %.0f ms | | |\n", base);
    std::printf("| a presentation of a live host, nothing changed | %.2f ms | %.3f | 1.2 |\n",
                median(times[2]), median(times[2]) / base);
    std::printf(
        "| a presentation of a live host after one event was edited | %.0f ms | %.2f | 1.2 |\n",
        median(times[3]), median(times[3]) / base);
    std::printf("| a presentation that asks everything anew | %.0f ms | %.2f | |\n",
                median(times[1]), median(times[1]) / base);
    std::_Exit(std::fflush(stdout));
}
