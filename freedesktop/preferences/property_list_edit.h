// Changes a property list, given as the bytes of its file, in the form and encoding that it has.
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>

#include "base/result.h"
#include "freedesktop/preferences/list_edit.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

enum class PropertyListForm { xml, binary, oldText };

PropertyListForm formOfPropertyList(std::span<const std::byte> bytes);

// The bytes of the changed list; they have been parsed again and hold exactly the changes. An error
// has `what` alone. `list` is what the bytes were parsed to. Values are booleans, numbers, texts
// and arrays of them.
Result<std::string> changedDictionary(std::span<const std::byte> bytes,
                                      const platform::PropertyListDictionary& list,
                                      const DictionaryChanges& changes);
Result<std::string> changedArray(std::span<const std::byte> bytes,
                                 const platform::PropertyListArray& list,
                                 const platform::PropertyListArray& newList);

// A new list in XML.
Result<std::string> newDictionary(const DictionaryChanges& entries);
Result<std::string> newArray(const platform::PropertyListArray& items);

// Where the keys of a dictionary stand: "LINE:COLUMN" by key. Empty for the binary form.
std::map<std::string, std::string> placesOfKeys(std::span<const std::byte> bytes);

// Numbers that are no numbers are the same, too.
bool areSame(const platform::PropertyListValue& first, const platform::PropertyListValue& second);

} // namespace quorvel::freedesktop
