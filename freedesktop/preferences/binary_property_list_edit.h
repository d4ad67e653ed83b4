// Changes binary property lists with libplist.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "base/result.h"
#include "freedesktop/preferences/list_edit.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// The bytes have been parsed without an error. An error has `what` alone.
Result<std::string> changedBinaryDictionary(std::span<const std::byte> bytes,
                                            const DictionaryChanges& changes);
Result<std::string> binaryOfArray(const platform::PropertyListArray& items);

} // namespace quorvel::freedesktop
