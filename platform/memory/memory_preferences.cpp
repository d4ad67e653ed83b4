#include "platform/memory/memory_preferences.h"

namespace quorvel::platform::memory {

namespace {

template <typename Content>
std::optional<Content>
contentOf(const std::map<std::string, MemoryPreferences::File, std::less<>>& files,
          std::string_view path) {
    const auto found = files.find(path);
    if (found == files.end()) {
        return std::nullopt;
    }
    const auto* content = std::get_if<Content>(&found->second);
    return content ? std::optional<Content>(*content) : std::nullopt;
}

std::string entry(std::string_view kind, std::string_view name) {
    return std::string(kind).append(" ").append(name);
}

} // namespace

std::optional<PropertyListDictionary>
MemoryPreferences::dictionaryWithContentsOfFile(std::string_view path) {
    reads.push_back(entry("dictionary", path));
    return contentOf<PropertyListDictionary>(files, path);
}

std::optional<PropertyListArray> MemoryPreferences::arrayWithContentsOfFile(std::string_view path) {
    reads.push_back(entry("array", path));
    return contentOf<PropertyListArray>(files, path);
}

std::optional<std::vector<std::string>> MemoryPreferences::copyKeyList(std::string_view domain) {
    reads.push_back(entry("keyList", domain));
    const auto found = domains.find(domain);
    return found == domains.end() ? std::nullopt : found->second.keyList;
}

std::optional<PropertyListDictionary>
MemoryPreferences::copyMultiple(const std::vector<std::string>& keys, std::string_view domain) {
    reads.push_back(entry("multiple", domain));
    const auto found = domains.find(domain);
    if (found == domains.end() || !found->second.values) {
        return std::nullopt;
    }
    PropertyListDictionary copied;
    for (const auto& key : keys) {
        if (const auto* value = objectForKey(*found->second.values, key)) {
            copied.insert_or_assign(key, *value);
        }
    }
    return copied;
}

void MemoryPreferences::setDomain(const std::string& domain, const PropertyListDictionary& values) {
    Domain& target = domains[domain];
    target = {};
    if (values.empty()) {
        return;
    }
    target.values = values;
    target.keyList.emplace();
    for (const auto& [key, value] : values) {
        target.keyList->push_back(key);
    }
}

} // namespace quorvel::platform::memory
