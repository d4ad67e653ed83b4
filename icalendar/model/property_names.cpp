// The names that are longer than a word or in lower case, which few lines have.
#include "icalendar/model/property_names.h"

namespace quorvel::icalendar {

const PropertyName* PropertyTable::findInAnyCase(std::size_t first, std::string_view line) const {
    for (std::size_t i = first; i != 0; i = m_next[i - 1]) {
        const PropertyName& entry = propertyNames[i - 1];
        const std::size_t length = entry.name.size();
        if (endsAt(length, line) && equalsIgnoringCase(line.substr(0, length), entry.name)) {
            return &entry;
        }
    }
    return nullptr;
}

} // namespace quorvel::icalendar
