// Property lists from bytes and files: binary, XML, and the old format of braces.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "platform/property_list.h"

namespace quorvel::freedesktop {

// Either a value or what is wrong with the file, in a few words ("the XML breaks off").
struct PropertyListReading {
    std::optional<platform::PropertyListValue> value;
    std::string problem;
    bool missing = false; // there is no such file
};

// Time and memory are bounded, whatever the bytes are. White space alone is an empty dictionary. A
// reference of a keyed archive is a dictionary with "CF$UID". What is no character in a text, and a
// NUL in one of a binary list, is U+FFFD.
PropertyListReading readPropertyList(std::span<const std::byte> bytes);

// Only a regular file is read. The path may lead anywhere.
PropertyListReading readPropertyListFile(const std::string& path);

} // namespace quorvel::freedesktop
