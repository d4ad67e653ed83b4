// Property-list files, and the preferences service that newer systems read settings through.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/property_list.h"

namespace quorvel::platform {

class Preferences {
public:
    virtual ~Preferences() = default;

    virtual double foundationVersionNumber() const = 0;

    // Nothing when the file is missing, unreadable or of another top-level type.
    virtual std::optional<PropertyListDictionary>
    dictionaryWithContentsOfFile(std::string_view path) = 0;
    virtual std::optional<PropertyListArray> arrayWithContentsOfFile(std::string_view path) = 0;

    // For the current user and any host. Nothing for an absent, unreadable or empty domain.
    virtual std::optional<std::vector<std::string>> copyKeyList(std::string_view domain) = 0;
    virtual std::optional<PropertyListDictionary> copyMultiple(const std::vector<std::string>& keys,
                                                               std::string_view domain) = 0;
};

} // namespace quorvel::platform
