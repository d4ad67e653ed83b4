#include "freedesktop/preferences/property_list_edit.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <utility>

#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/binary_property_list_check.h"
#include "freedesktop/preferences/binary_property_list_edit.h"
#include "freedesktop/preferences/old_property_list.h"
#include "freedesktop/preferences/property_list_file.h"
#include "freedesktop/preferences/text_encoding.h"
#include "freedesktop/preferences/text_position.h"
#include "freedesktop/preferences/xml_places.h"
#include "freedesktop/preferences/xml_property_list.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListDictionary;
using platform::PropertyListValue;

constexpr std::string_view emptyDictionary = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                             "<plist version=\"1.0\">\n"
                                             "<dict>\n"
                                             "</dict>\n"
                                             "</plist>\n";
constexpr std::string_view emptyArray = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                        "<plist version=\"1.0\">\n"
                                        "<array>\n"
                                        "</array>\n"
                                        "</plist>\n";

std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Error cannotEdit() {
    return {translated("its form does not allow this change"), {}, {}};
}

// The text of the list with its places, as an edit needs them. An edit of the text is written back
// in the encoding of the file.
struct EditableText {
    std::string text;
    ListPlaces places;
    PropertyListForm form = PropertyListForm::xml;
    XmlEncoding encoding = XmlEncoding::utf8;
};

// Absent: a byte is invalid in the encoding and would not survive, or the root is no list.
std::optional<EditableText> editableXml(std::string_view raw) {
    const std::string text = decodedText(raw);
    const bool isDeclared = !hasDetectableEncoding(raw) && namesOtherEncoding(text);
    const XmlEncoding encoding = isDeclared ? XmlEncoding::declared : XmlEncoding::utf8;
    if (!isDeclared && encodedLike(raw, text) != raw) {
        return std::nullopt;
    }
    std::string open = withOpenRoot(isDeclared ? raw : std::string_view(text), encoding);
    auto places = placesInXml(open, encoding);
    return places ? std::optional(EditableText{std::move(open), *std::move(places),
                                               PropertyListForm::xml, encoding})
                  : std::nullopt;
}

std::optional<EditableText> editableOldText(std::string_view raw) {
    std::string text = decodedText(raw);
    auto places = placesInOldPropertyList(text);
    if (!places || encodedLike(raw, text) != raw) {
        return std::nullopt;
    }
    return EditableText{std::move(text), *std::move(places), PropertyListForm::oldText,
                        XmlEncoding::utf8};
}

std::string bytesOf(std::string_view raw, const EditableText& source, std::string text) {
    return source.encoding == XmlEncoding::declared ? std::move(text) : encodedLike(raw, text);
}

// Nothing may have changed but what was asked for.
Result<std::string> verified(std::string bytes, const PropertyListValue& expected) {
    const auto parsed = parsePropertyList(std::as_bytes(std::span(bytes.data(), bytes.size())));
    if (!parsed || !areSame(*parsed, expected)) {
        return cannotEdit();
    }
    return bytes;
}

Result<std::string> verified(const Result<std::string>& bytes, const PropertyListValue& expected) {
    return bytes ? verified(*bytes, expected) : bytes;
}

PropertyListValue expectedDictionary(PropertyListDictionary list, const DictionaryChanges& changes,
                                     PropertyListForm form) {
    for (const auto& [key, value] : changes) {
        if (value) {
            list.insert_or_assign(key,
                                  form == PropertyListForm::oldText ? asOldValue(*value) : *value);
        } else if (const auto found = list.find(key); found != list.end()) {
            list.erase(found);
        }
    }
    return {std::move(list)};
}

// Absent also for the binary form.
std::optional<EditableText> editable(std::string_view raw, PropertyListForm form) {
    if (form == PropertyListForm::binary) {
        return std::nullopt;
    }
    return form == PropertyListForm::xml ? editableXml(raw) : editableOldText(raw);
}

Result<std::string> changedText(std::string_view raw, PropertyListForm form,
                                const DictionaryChanges& changes) {
    const auto source = editable(raw, form);
    if (!source) {
        return cannotEdit();
    }
    const auto edited = [&](const ListNotation& notation) {
        return bytesOf(raw, *source,
                       withChangedEntries(source->text, source->places, changes, notation));
    };
    return form == PropertyListForm::xml ? edited(XmlNotation(source->encoding))
                                         : edited(OldNotation());
}

Result<std::string> changedXmlArray(std::string_view raw, const PropertyListArray& list,
                                    const PropertyListArray& newList) {
    const auto source = editableXml(raw);
    if (!source) {
        return cannotEdit();
    }
    return bytesOf(raw, *source,
                   withChangedItems(source->text, source->places, list, newList,
                                    XmlNotation(source->encoding)));
}

} // namespace

PropertyListForm formOfPropertyList(std::span<const std::byte> bytes) {
    if (looksLikeBinaryPropertyList(bytes)) {
        return PropertyListForm::binary;
    }
    return looksLikeXml(decodedText(textOf(bytes))) ? PropertyListForm::xml
                                                    : PropertyListForm::oldText;
}

Result<std::string> changedDictionary(std::span<const std::byte> bytes,
                                      const PropertyListDictionary& list,
                                      const DictionaryChanges& changes) {
    const PropertyListForm form = formOfPropertyList(bytes);
    return verified(form == PropertyListForm::binary ? changedBinaryDictionary(bytes, changes)
                                                     : changedText(textOf(bytes), form, changes),
                    expectedDictionary(list, changes, form));
}

Result<std::string> changedArray(std::span<const std::byte> bytes, const PropertyListArray& list,
                                 const PropertyListArray& newList) {
    switch (formOfPropertyList(bytes)) {
    case PropertyListForm::xml:
        return verified(changedXmlArray(textOf(bytes), list, newList), {newList});
    case PropertyListForm::binary:
        return verified(binaryOfArray(newList), {newList});
    case PropertyListForm::oldText:
        break;
    }
    const PropertyListValue stored = asOldValue({newList});
    return verified(encodedLike(textOf(bytes), OldNotation().value(stored) + '\n'), stored);
}

Result<std::string> newDictionary(const DictionaryChanges& entries) {
    return changedDictionary(std::as_bytes(std::span(emptyDictionary)), {}, entries);
}

Result<std::string> newArray(const PropertyListArray& items) {
    return changedArray(std::as_bytes(std::span(emptyArray)), {}, items);
}

std::map<std::string, std::string> placesOfKeys(std::span<const std::byte> bytes) {
    std::map<std::string, std::string> positions;
    if (const auto source = editable(textOf(bytes), formOfPropertyList(bytes))) {
        for (const EntryPlace& entry : source->places.entries) {
            positions.insert_or_assign(entry.key, positionText(source->text, entry.start));
        }
    }
    return positions;
}

bool areSame(const PropertyListValue& first, const PropertyListValue& second) {
    if (first.value.index() != second.value.index()) {
        return false;
    }
    return std::visit(
        [&](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            const auto& other = std::get<Held>(second.value);
            if constexpr (std::is_same_v<Held, double>) {
                return std::bit_cast<std::uint64_t>(held) == std::bit_cast<std::uint64_t>(other);
            } else if constexpr (std::is_same_v<Held, PropertyListArray>) {
                return std::ranges::equal(held, other, areSame);
            } else if constexpr (std::is_same_v<Held, PropertyListDictionary>) {
                return std::ranges::equal(held, other, [](const auto& a, const auto& b) {
                    return a.first == b.first && areSame(a.second, b.second);
                });
            } else {
                return held == other;
            }
        },
        first.value);
}

} // namespace quorvel::freedesktop
