// Property-list files and preference domains from maps, and a record of what was read.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/preferences.h"

namespace quorvel::platform::memory {

class MemoryPreferences : public Preferences {
public:
    using File = std::variant<PropertyListDictionary, PropertyListArray>;

    // What the service answers for one domain; either answer may be missing.
    struct Domain {
        std::optional<std::vector<std::string>> keyList;
        std::optional<PropertyListDictionary> values;
    };

    double foundationVersionNumber() const override { return foundationVersion; }
    std::optional<PropertyListDictionary>
    dictionaryWithContentsOfFile(std::string_view path) override;
    std::optional<PropertyListArray> arrayWithContentsOfFile(std::string_view path) override;
    std::optional<std::vector<std::string>> copyKeyList(std::string_view domain) override;
    // The values of those keys that the domain has.
    std::optional<PropertyListDictionary> copyMultiple(const std::vector<std::string>& keys,
                                                       std::string_view domain) override;

    // A domain that holds exactly these values; an empty dictionary is an empty domain.
    void setDomain(const std::string& domain, const PropertyListDictionary& values);

    double foundationVersion = 1047.25;
    std::map<std::string, File, std::less<>> files; // by path
    std::map<std::string, Domain, std::less<>> domains;
    // One entry a call: "dictionary PATH", "array PATH", "keyList DOMAIN", "multiple DOMAIN".
    std::vector<std::string> reads;
};

} // namespace quorvel::platform::memory
