// What the tests of property lists share.
#pragma once

#include <chrono>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {

using ParsedList = Result<platform::PropertyListValue>;

inline ParsedList parse(std::string_view bytes) {
    return parsePropertyList(std::as_bytes(std::span(bytes.data(), bytes.size())));
}

inline ParsedList parseXmlObject(std::string_view object) {
    return parse("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//X\" "
                 "\"http://example.org/x.dtd\">\n<plist version=\"1.0\">" +
                 std::string(object) + "</plist>\n");
}

// Empty: none.
inline std::string problemOf(const ParsedList& list) {
    return list ? "" : list.error().what;
}

// "LINE:COLUMN", or empty.
inline std::string placeOf(const ParsedList& list) {
    return list ? "" : list.error().where;
}

template <class Kind>
Kind as(const ParsedList& list) {
    EXPECT_EQ(problemOf(list), "");
    if (!list || !std::holds_alternative<Kind>(list->value)) {
        ADD_FAILURE() << "of another kind";
        return Kind();
    }
    return std::get<Kind>(list->value);
}

template <class Kind>
Kind entry(const ParsedList& list, std::string_view key) {
    const auto dictionary = as<platform::PropertyListDictionary>(list);
    const auto found = dictionary.find(key);
    if (found == dictionary.end() || !std::holds_alternative<Kind>(found->second.value)) {
        ADD_FAILURE() << "no such entry: " << key;
        return Kind();
    }
    return std::get<Kind>(found->second.value);
}

// The bounds in these tests are those of a machine. Where a program emulates one, it takes
// QUORVEL_TEST_SLOWNESS times as long.
class Stopwatch {
public:
    double seconds() const {
        const double elapsed =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
        const char* const slowness = std::getenv("QUORVEL_TEST_SLOWNESS");
        return elapsed / (slowness != nullptr ? std::atof(slowness) : 1);
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace quorvel::freedesktop
