// Changes entries in the text of a property list; every other byte stays.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/preferences/list_notation.h"
#include "freedesktop/preferences/list_places.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// An absent value removes the key.
using DictionaryChanges = std::map<std::string, std::optional<platform::PropertyListValue>>;

// New entries follow the others and are laid out like the last one. `places` are those of a
// dictionary in `text`, whose root is no empty-element tag.
std::string withChangedEntries(std::string_view text, const ListPlaces& places,
                               const DictionaryChanges& changes, const ListNotation& notation);

// Likewise for an array: entries that both lists begin with stay, also where others are missing
// between them.
std::string withChangedItems(std::string_view text, const ListPlaces& places,
                             const platform::PropertyListArray& before,
                             const platform::PropertyListArray& after,
                             const ListNotation& notation);

} // namespace quorvel::freedesktop
