// Parses arbitrary bytes as a property list of any format, and changes the list.
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/utf8.h"
#include "freedesktop/preferences/property_list_budget.h"
#include "freedesktop/preferences/property_list_edit.h"
#include "freedesktop/preferences/property_list_file.h"
#include "tests/fuzz/fuzzing.h"

namespace {

using namespace quorvel::freedesktop;
using quorvel::wellFormedUtf8;
using quorvel::fuzzing::processorTime;
using quorvel::fuzzing::require;
using quorvel::platform::PropertyListArray;
using quorvel::platform::PropertyListDictionary;
using quorvel::platform::PropertyListValue;

constexpr double greatestMilliseconds = 5000; // under the sanitizers

void checkText(const std::string& text) {
    require(wellFormedUtf8(text) == text, "texts are UTF-8");
}

// Every conversion that the settings make.
void convert(const PropertyListValue& value) {
    const bool isSet = boolValue(value);
    const std::int64_t integer = integerValue(value);
    require(intValue(value) != 0 || integer != 1, "a narrow integer holds a small one");
    require(!(floatValue(value) > 1) || isSet || std::holds_alternative<std::string>(value.value),
            "a large number is true");
    stringValue(value);
}

// The objects of the value, keys included.
std::size_t check(const PropertyListValue& value, std::size_t depth) {
    require(depth <= PropertyListBudget::depth, "the depth is bounded");
    convert(value);
    std::size_t objects = 1;
    if (const auto* const text = std::get_if<std::string>(&value.value)) {
        checkText(*text);
    } else if (const auto* const array = std::get_if<PropertyListArray>(&value.value)) {
        for (const auto& item : *array) {
            objects += check(item, depth + 1);
        }
    } else if (const auto* const entries = std::get_if<PropertyListDictionary>(&value.value)) {
        for (const auto& [key, item] : *entries) {
            checkText(key);
            objects += 1 + check(item, depth + 1);
        }
    }
    return objects;
}

// A change succeeds completely or is refused; it checks itself that nothing else is different.
void change(std::span<const std::byte> bytes, const PropertyListValue& list) {
    const PropertyListValue text{std::string("<\"\\\xC3\xA4>")};
    if (const auto* const items = std::get_if<PropertyListArray>(&list.value)) {
        PropertyListArray longer(items->begin() + (items->empty() ? 0 : 1), items->end());
        longer.push_back(text);
        const auto changed = changedArray(bytes, *items, longer);
        require(changed || !changed.error().what.empty(), "an error has a text");
    } else if (const auto* const entries = std::get_if<PropertyListDictionary>(&list.value)) {
        DictionaryChanges changes{{"added", text}, {"textSize", {{std::int64_t{20}}}}};
        if (!entries->empty()) {
            changes[entries->begin()->first] = std::nullopt;
        }
        const auto changed = changedDictionary(bytes, *entries, changes);
        require(changed || !changed.error().what.empty(), "an error has a text");
        require(placesOfKeys(bytes).size() <= entries->size(), "a key stands in one place");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(reinterpret_cast<const std::byte*>(data), size);
    const double before = processorTime();
    const auto list = parsePropertyList(bytes);
    require(list || !list.error().what.empty(), "an error has a text");
    if (list) {
        // A reference of a keyed archive is one object that becomes three.
        require(check(*list, 0) <= 3 * PropertyListBudget::objects,
                "the number of objects is bounded");
        change(bytes, *list);
    }
    require(processorTime() - before < greatestMilliseconds, "an input is done in time");
    return 0;
}
