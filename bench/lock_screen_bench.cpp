// What the plugin of the phone's shell costs the process that loads it, on the display and with the
// calendars of the environment:
//   lock_screen_bench FOLDER ROUNDS [SECONDS]
// where FOLDER has the plugin's file. With SECONDS, it prints how often the main loop wakes up in
// that time while the page is shown and nothing happens; else
//   - the memory that ten rounds of locking and unlocking add to the process, after the toolkit has
//     shown a window
//   - the longest time that the main loop was busy at once during the first round, which reads the
//     calendars for the first time if there is no index
//   - from the mapping of the page to the end of its first frame, in turn with a page that has a
//     label instead of the agenda: medians of ROUNDS rounds

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include <gtk/gtk.h>

namespace {

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "lock_screen_bench: %s\n", what);
    std::exit(1);
}

double milliseconds() {
    return static_cast<double>(g_get_monotonic_time()) / 1000;
}

// Processor time of this thread.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// How often the main loop waited, and how long it was busy at once, at most: elapsed time, in which
// other threads may have had the processor, and processor time.
class BusyTimes {
public:
    static void begin() {
        longest = longestOfThread = 0;
        waits = 0;
        waited();
        g_main_context_set_poll_func(nullptr, poll);
    }
    static void end() { g_main_context_set_poll_func(nullptr, nullptr); }

    static inline double longest = 0; // milliseconds
    static inline double longestOfThread = 0;
    static inline int waits = 0;

private:
    static gint poll(GPollFD* descriptors, guint count, gint timeout) {
        longest = std::max(longest, milliseconds() - pollEnd);
        longestOfThread = std::max(longestOfThread, threadMilliseconds() - pollEndOfThread);
        const gint result = g_poll(descriptors, count, timeout);
        waits += timeout != 0 ? 1 : 0;
        waited();
        return result;
    }
    static void waited() {
        pollEnd = milliseconds();
        pollEndOfThread = threadMilliseconds();
    }
    static inline double pollEnd = 0;
    static inline double pollEndOfThread = 0;
};

void runFor(double seconds) {
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    const GSourceFunc quit = [](gpointer data) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(data));
        return G_SOURCE_REMOVE;
    };
    g_timeout_add(static_cast<guint>(seconds * 1000), quit, loop);
    g_main_loop_run(loop);
    g_main_loop_unref(loop);
}

// A page of a lock screen.
class Page {
public:
    explicit Page(GtkWidget* content)
        : m_window(gtk_window_new(GTK_WINDOW_TOPLEVEL))
        , m_content(content) {
        gtk_window_set_default_size(GTK_WINDOW(m_window), 360, 720);
        gtk_container_add(GTK_CONTAINER(m_window), content);
        g_signal_connect(
            content, "map",
            G_CALLBACK(+[](GtkWidget*, Page* page) { page->m_mapped = milliseconds(); }), this);
        gtk_widget_show(content);
        gtk_widget_realize(m_window);
        g_signal_connect(gtk_widget_get_frame_clock(m_window), "after-paint",
                         G_CALLBACK(+[](GdkFrameClock*, Page* page) { page->framePainted(); }),
                         this);
    }
    ~Page() {
        g_signal_handlers_disconnect_by_data(gtk_widget_get_frame_clock(m_window), this);
        g_signal_handlers_disconnect_by_data(m_content, this);
        gtk_widget_destroy(m_window);
    }
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    // From the mapping to the end of the first frame, in milliseconds.
    double turnTo() {
        gtk_widget_show(m_window);
        while (m_firstFrame == 0) {
            g_main_context_iteration(nullptr, TRUE);
        }
        return m_firstFrame - m_mapped;
    }
    int height() const {
        int natural = 0;
        gtk_widget_get_preferred_height(m_content, nullptr, &natural);
        return natural;
    }

private:
    void framePainted() {
        if (m_mapped != 0 && m_firstFrame == 0) {
            m_firstFrame = milliseconds();
        }
    }

    GtkWidget* m_window;
    GtkWidget* m_content;
    double m_mapped = 0; // 0: not yet
    double m_firstFrame = 0;
};

GType pluginType(const char* folder) {
    GIOExtensionPoint* const point = g_io_extension_point_register("phosh-lockscreen-widget");
    g_io_modules_scan_all_in_directory(folder);
    GIOExtension* const plugin = g_io_extension_point_get_extension_by_name(point, "quorvel");
    if (plugin == nullptr) {
        fail("there is no plugin in that folder");
    }
    return g_io_extension_get_type(plugin);
}

GtkWidget* makeAgenda(GType type) {
    return GTK_WIDGET(g_object_new(type, nullptr));
}

// Written by this process alone, in MiB: pages of files can be read again.
double privateMemory() {
    std::ifstream file("/proc/self/smaps_rollup");
    double kilobytes = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("Private_Dirty:")) {
            kilobytes += std::atof(line.c_str() + sizeof "Private_Dirty:" - 1);
        }
    }
    return kilobytes / 1024;
}

void lockAndUnlock(GType type) {
    Page page(makeAgenda(type));
    runFor(0.3);
    page.turnTo();
    runFor(0.7);
    if (page.height() <= 1) {
        std::fprintf(stderr, "lock_screen_bench: the page has no rows yet\n");
    }
}

void printMemory(GType type, double before) {
    for (int round = 0; round < 10; ++round) {
        lockAndUnlock(type);
    }
    runFor(0.5);
    std::printf("memory added by ten rounds   %8.1f MiB\n", privateMemory() - before);
}

void printLongestBusyTime(GType type) {
    BusyTimes::begin();
    {
        Page page(makeAgenda(type));
        page.turnTo();
        runFor(3);
    }
    BusyTimes::end();
    std::printf("main loop busy at once, most %8.2f ms, of processor time %.2f ms\n",
                BusyTimes::longest, BusyTimes::longestOfThread);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void printFirstFrames(GType type, int rounds) {
    std::vector<double> with;
    std::vector<double> without;
    for (int round = 0; round < rounds; ++round) {
        {
            Page page(makeAgenda(type));
            runFor(0.4); // until the parts are ready, as while the user turns to the page
            with.push_back(page.turnTo());
        }
        Page page(gtk_label_new("12:30"));
        runFor(0.1);
        without.push_back(page.turnTo());
    }
    std::printf("map to first frame, agenda   %8.2f ms\n", median(with));
    std::printf("map to first frame, a label  %8.2f ms\n", median(without));
    std::printf("difference                   %8.2f ms\n", median(with) - median(without));
}

void printWakeUps(GType type, int seconds) {
    Page page(makeAgenda(type));
    page.turnTo();
    runFor(5); // until everything has been read and painted
    BusyTimes::begin();
    runFor(seconds);
    BusyTimes::end();
    std::printf("wake-ups in %d seconds       %8d\n", seconds, BusyTimes::waits - 1);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4 || std::atoi(argv[2]) < 1) {
        fail("usage: lock_screen_bench FOLDER ROUNDS [SECONDS]");
    }
    gtk_init(&argc, &argv);
    {
        Page page(gtk_label_new("12:30"));
        page.turnTo();
        runFor(0.5);
    }
    const double before = privateMemory();
    const GType type = pluginType(argv[1]);
    if (argc == 4) {
        printWakeUps(type, std::atoi(argv[3]));
        return 0;
    }
    printLongestBusyTime(type);
    printMemory(type, before);
    printFirstFrames(type, std::atoi(argv[2]));
    return 0;
}
