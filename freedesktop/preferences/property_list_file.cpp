#include "freedesktop/preferences/property_list_file.h"

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "base/translatable_text.h"
#include "base/utf8.h"
#include "freedesktop/io/regular_file.h"
#include "freedesktop/preferences/binary_property_list_check.h"
#include "freedesktop/preferences/old_property_list.h"
#include "freedesktop/preferences/plist_handles.h"
#include "freedesktop/preferences/property_list_budget.h"
#include "freedesktop/preferences/text_encoding.h"
#include "freedesktop/preferences/xml_property_list.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListData;
using platform::PropertyListDictionary;
using platform::PropertyListValue;

constexpr const char* damagedBinary = translatable("the binary list is damaged");

PropertyListValue valueOf(plist_t node);

std::string textOf(plist_t node, void (*get)(plist_t, char**)) {
    char* text = nullptr;
    get(node, &text);
    const Malloced<char> owned(text);
    return owned ? wellFormedUtf8(owned.get()) : std::string();
}

PropertyListData dataOf(plist_t node) {
    char* bytes = nullptr;
    std::uint64_t length = 0;
    plist_get_data_val(node, &bytes, &length);
    const Malloced<char> owned(bytes);
    const auto* const first = reinterpret_cast<const std::byte*>(owned.get());
    return owned ? PropertyListData(first, first + length) : PropertyListData();
}

// Seconds and microseconds since the reference date.
platform::NSDate dateOf(plist_t node) {
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return {static_cast<double>(seconds) + static_cast<double>(microseconds) / 1e6};
}

PropertyListValue unsignedValue(std::uint64_t number) {
    if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        return {number};
    }
    return {static_cast<std::int64_t>(number)};
}

// The library distinguishes a negative integer from a large unsigned one only in its XML.
bool isNegative(plist_t node) {
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node, &xml, &length);
    const Malloced<char> owned(xml);
    return owned &&
           std::string_view(owned.get(), length).find("<integer>-") != std::string_view::npos;
}

PropertyListValue integerOf(plist_t node) {
    std::uint64_t number = 0;
    plist_get_uint_val(node, &number);
    const PropertyListValue value = unsignedValue(number);
    const bool isLarge = std::holds_alternative<std::uint64_t>(value.value);
    return isLarge && isNegative(node) ? PropertyListValue{static_cast<std::int64_t>(number)}
                                       : value;
}

PropertyListValue referenceOf(plist_t node) {
    std::uint64_t number = 0;
    plist_get_uid_val(node, &number);
    return {PropertyListDictionary{{"CF$UID", unsignedValue(number)}}};
}

PropertyListArray arrayOf(plist_t node) {
    PropertyListArray values;
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(node, &iterator);
    const Malloced<void> owned(iterator);
    while (true) {
        plist_t item = nullptr;
        plist_array_next_item(node, iterator, &item);
        if (item == nullptr) {
            return values;
        }
        values.push_back(valueOf(item));
    }
}

PropertyListDictionary dictionaryOf(plist_t node) {
    PropertyListDictionary values;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    const Malloced<void> owned(iterator);
    while (true) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &key, &item);
        const Malloced<char> ownedKey(key);
        if (item == nullptr || !ownedKey) {
            return values;
        }
        values.insert_or_assign(wellFormedUtf8(ownedKey.get()), valueOf(item));
    }
}

PropertyListValue valueOf(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t truth = 0;
        plist_get_bool_val(node, &truth);
        return {truth != 0};
    }
    case PLIST_UINT:
        return integerOf(node);
    case PLIST_REAL: {
        double real = 0;
        plist_get_real_val(node, &real);
        return {real};
    }
    case PLIST_DATE:
        return {dateOf(node)};
    case PLIST_DATA:
        return {dataOf(node)};
    case PLIST_ARRAY:
        return {arrayOf(node)};
    case PLIST_DICT:
        return {dictionaryOf(node)};
    case PLIST_UID:
        return referenceOf(node);
    default:
        return {textOf(node, plist_get_string_val)};
    }
}

Error failure(std::string problem) {
    return {std::move(problem), {}, {}};
}

// The bytes have been checked.
Result<PropertyListValue> parseCheckedBinary(std::span<const std::byte> bytes) {
    plist_t root = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::uint32_t>(bytes.size()), &root);
    const PlistNode owned(root);
    if (!owned) {
        return failure(damagedBinary);
    }
    return valueOf(root);
}

Result<PropertyListValue> parseBinary(std::span<const std::byte> bytes) {
    const auto textsWithNul = checkBinaryPropertyList(bytes);
    if (!textsWithNul) {
        return textsWithNul.error();
    }
    if (textsWithNul->empty()) {
        return parseCheckedBinary(bytes);
    }
    std::vector<std::byte> changed(bytes.begin(), bytes.end());
    replaceNuls(*textsWithNul, changed);
    const auto secondCheck = checkBinaryPropertyList(changed);
    const bool isGood = secondCheck && secondCheck->empty();
    return isGood ? parseCheckedBinary(changed) : failure(damagedBinary);
}

} // namespace

Result<PropertyListValue> parsePropertyList(std::span<const std::byte> bytes) {
    if (bytes.empty()) {
        return failure(translatable("it is empty"));
    }
    if (bytes.size() > PropertyListBudget::fileBytes) {
        return failure(translatable("it is too large"));
    }
    if (looksLikeBinaryPropertyList(bytes)) {
        return parseBinary(bytes);
    }
    const std::string_view raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string text = decodedText(raw);
    if (!looksLikeXml(text)) {
        return parseOldPropertyList(text);
    }
    return parseXmlPropertyList(text, hasDetectableEncoding(raw) ? std::string_view() : raw);
}

Result<std::optional<PropertyListValue>> readPropertyListFile(const std::string& path) {
    const auto file = readRegularFile(path, PropertyListBudget::fileBytes);
    if (!file) {
        return file.error();
    }
    const std::optional<std::vector<std::byte>>& bytes = *file;
    if (!bytes) {
        return std::optional<PropertyListValue>();
    }
    auto value = parsePropertyList(*bytes);
    if (!value) {
        return value.error();
    }
    return std::optional(std::move(value).value());
}

} // namespace quorvel::freedesktop
