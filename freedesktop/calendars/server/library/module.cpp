// The one symbol of the module that wraps the calendar server's library.
#include <new>
#include <system_error>

#include "freedesktop/calendars/server/library/ecal_data_server.h"

extern "C" [[gnu::visibility("default")]] quorvel::freedesktop::eds::DataServer*
quorvelMakeDataServer(const char* sourcesService) {
    try {
        return new quorvel::freedesktop::eds::EcalDataServer(sourcesService);
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (const std::system_error&) {
        return nullptr;
    }
}
