// The plain way, to compare with: libical parses whole files and expands every event.
//   libical_agenda DAYS FILE...
// Prints how many occurrences lie in that many days from 2026-03-10 on, in UTC.

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>

#include <libical/ical.h>

namespace {

constexpr std::time_t start = 1773097200; // 2026-03-10, midnight in Berlin

struct FreeComponent {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, FreeComponent>;

struct FreeParser {
    void operator()(icalparser* parser) const { icalparser_free(parser); }
};

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

char* nextLine(char* place, std::size_t size, void* file) {
    return std::fgets(place, static_cast<int>(size), static_cast<std::FILE*>(file));
}

Component parsed(const char* path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path, "r"));
    if (!file) {
        std::perror(path);
        std::exit(1);
    }
    const std::unique_ptr<icalparser, FreeParser> parser(icalparser_new());
    icalparser_set_gen_data(parser.get(), file.get());
    return Component(icalparser_parse(parser.get(), nextLine));
}

void countOne(icalcomponent*, icaltime_span*, void* count) {
    ++*static_cast<long*>(count);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: libical_agenda DAYS FILE...\n");
        return 2;
    }
    icalerror_set_errors_are_fatal(0);
    icaltimezone* const utc = icaltimezone_get_utc_timezone();
    const icaltimetype from = icaltime_from_timet_with_zone(start, 0, utc);
    const icaltimetype to =
        icaltime_from_timet_with_zone(start + std::atoi(argv[1]) * 86400, 0, utc);
    long count = 0;
    for (int i = 2; i < argc; ++i) {
        const Component calendar = parsed(argv[i]);
        for (icalcomponent* event =
                 icalcomponent_get_first_component(calendar.get(), ICAL_VEVENT_COMPONENT);
             event != nullptr;
             event = icalcomponent_get_next_component(calendar.get(), ICAL_VEVENT_COMPONENT)) {
            icalcomponent_foreach_recurrence(event, from, to, countOne, &count);
        }
    }
    std::printf("%ld\n", count);
    return 0;
}
