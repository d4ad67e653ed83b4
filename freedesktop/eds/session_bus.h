// Whether the session's message bus has a calendar server, or could start one.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quorvel::freedesktop::eds {

// By the environment alone: false means that there is no session bus, and nothing is to be waited
// for. A bus is not started.
bool mayHaveSessionBus();

struct SourcesService {
    std::optional<std::string> name; // absent: none
    std::string problem;             // why
};

// Ends a search from another thread.
class SearchEnd {
public:
    SearchEnd();
    ~SearchEnd();
    SearchEnd(const SearchEnd&) = delete;
    SearchEnd& operator=(const SearchEnd&) = delete;

    void cancel();

private:
    friend SourcesService findSourcesService(SearchEnd&);
    void* m_cancellable;
};

// Blocks until the bus answers. From here on the end of the bus is not the end of the process.
SourcesService findSourcesService(SearchEnd& end);

} // namespace quorvel::freedesktop::eds
