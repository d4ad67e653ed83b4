#include "freedesktop/preferences/property_list_builder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/translatable_text.h"
#include "freedesktop/preferences/property_list_budget.h"
#include "freedesktop/preferences/xml_values.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListDictionary;
using platform::PropertyListValue;
using Element = PropertyListBuilder::Element;

constexpr const char* foreignElement =
    translatable("the XML has elements that are not those of a property list");
constexpr const char* misplacedKey =
    translatable("the XML has a key without a value, or a value without a key");

constexpr std::array<std::pair<std::string_view, Element>, 11> elements{{
    {"plist", Element::plist},
    {"dict", Element::dictionary},
    {"array", Element::array},
    {"key", Element::key},
    {"string", Element::string},
    {"integer", Element::integer},
    {"real", Element::real},
    {"true", Element::yes},
    {"false", Element::no},
    {"date", Element::date},
    {"data", Element::data},
}};

std::optional<Element> elementNamed(std::string_view name) {
    const auto* const found = std::find_if(elements.begin(), elements.end(),
                                           [&](const auto& entry) { return entry.first == name; });
    return found == elements.end() ? std::nullopt : std::optional(found->second);
}

bool isLeaf(Element element) {
    return element != Element::plist && element != Element::dictionary && element != Element::array;
}

PropertyListValue emptyValue(Element element) {
    if (element == Element::array) {
        return {PropertyListArray()};
    }
    return {PropertyListDictionary()};
}

// Ignores the text between <true> and </true>.
std::optional<PropertyListValue> valueOfLeaf(Element element, std::string text) {
    switch (element) {
    case Element::integer:
        return integerOfText(text);
    case Element::real:
        return realOfText(text);
    case Element::yes:
        return PropertyListValue{true};
    case Element::no:
        return PropertyListValue{false};
    case Element::date:
        return dateOfText(text);
    case Element::data:
        return PropertyListValue{dataOfText(text)};
    default:
        return PropertyListValue{std::move(text)};
    }
}

} // namespace

Result<PropertyListValue> PropertyListBuilder::takeResult() {
    if (!m_problem.empty()) {
        return Error{std::move(m_problem), {}, {}};
    }
    return std::move(m_root);
}

void PropertyListBuilder::fail(const char* problem) {
    m_problem = problem;
    m_isDone = true;
}

bool PropertyListBuilder::isInsideLeaf() const {
    return !m_open.empty() && isLeaf(m_open.back().element);
}

// Each value of a dictionary follows a key, and a key is allowed nowhere else.
bool PropertyListBuilder::isKeyInPlace(Element element) const {
    const bool inDictionary = !m_open.empty() && m_open.back().element == Element::dictionary;
    return (element == Element::key) == (inDictionary && !m_open.back().key);
}

bool PropertyListBuilder::countObject(Element element) {
    if (element != Element::plist && ++m_objects > PropertyListBudget::objects) {
        fail(translatable("it holds too many objects"));
    } else if (m_open.size() >= PropertyListBudget::depth) {
        fail(translatable("it is nested too deep"));
    }
    return !m_isDone;
}

void PropertyListBuilder::start(std::string_view name) {
    if (m_isDone) {
        return;
    }
    const auto element = elementNamed(name);
    if (!element || isInsideLeaf() || (*element == Element::plist && !m_open.empty())) {
        return fail(foreignElement);
    }
    const bool isTopLevel = m_open.empty() || m_open.back().element == Element::plist;
    if (isTopLevel && m_objects > 0) {
        return fail(translatable("the XML has more than one object"));
    }
    if (!isKeyInPlace(*element)) {
        return fail(misplacedKey);
    }
    if (countObject(*element)) {
        m_open.push_back({*element, emptyValue(*element), std::nullopt});
    }
}

void PropertyListBuilder::text(std::string_view characters) {
    if (m_isDone) {
        return;
    }
    if (isInsideLeaf()) {
        m_contentBytes += characters.size();
        if (m_contentBytes > PropertyListBudget::contentBytes) {
            return fail(translatable("its texts are too large"));
        }
        m_text += characters;
    } else if (characters.find_first_not_of(" \t\r\n") != std::string_view::npos) {
        fail(translatable("the XML has text between its elements"));
    }
}

void PropertyListBuilder::end() {
    if (m_isDone || m_open.empty()) {
        return;
    }
    OpenElement closed = std::move(m_open.back());
    m_open.pop_back();
    if (isLeaf(closed.element)) {
        closeLeaf(closed.element);
    } else {
        closeContainer(std::move(closed));
    }
    if (m_open.empty() && !m_isDone) {
        m_isDone = true;
        if (m_objects == 0) {
            fail(translatable("the XML holds no object"));
        }
    }
}

void PropertyListBuilder::closeLeaf(Element element) {
    std::string text = std::exchange(m_text, std::string());
    if (element == Element::key) {
        m_open.back().key = std::move(text);
    } else {
        add(valueOfLeaf(element, std::move(text)));
    }
}

void PropertyListBuilder::closeContainer(OpenElement closed) {
    if (closed.key) {
        fail(misplacedKey);
    } else if (closed.element != Element::plist) {
        add(std::move(closed.value));
    }
}

void PropertyListBuilder::add(std::optional<PropertyListValue> value) {
    if (!value) {
        return fail(translatable("the XML has an invalid value"));
    }
    if (m_open.empty() || m_open.back().element == Element::plist) {
        m_root = std::move(*value);
        return;
    }
    OpenElement& parent = m_open.back();
    if (auto* const array = std::get_if<PropertyListArray>(&parent.value.value)) {
        array->push_back(std::move(*value));
    } else {
        std::get<PropertyListDictionary>(parent.value.value)
            .insert_or_assign(std::move(*parent.key), std::move(*value));
        parent.key.reset();
    }
}

} // namespace quorvel::freedesktop
