// Whether the session's message bus has a calendar server, or could start one.
#pragma once

#include <optional>
#include <string>

namespace quorvel::freedesktop::eds {

// Why there cannot be a calendar server; absent where the bus has to be asked.
std::optional<std::string> problemWithDataServer();

struct SourcesService {
    std::optional<std::string> name; // absent: there is none
    std::string problem;             // why there is none
};

// Cancels a search from another thread: the library guards the cancellation.
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

// Blocks until the bus answers or the search is cancelled. From here on the end of the bus does not
// end the process.
SourcesService findSourcesService(SearchEnd& end);

} // namespace quorvel::freedesktop::eds
