// A property list put together from the elements of its XML.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/property_list.h"

namespace quorvel::freedesktop {

// Takes the elements and texts in their order; each end belongs to the last element that is open.
// The budgets are kept. After a problem, or after the root's end, all else is ignored.
class PropertyListBuilder {
public:
    // The kinds of elements; the values of `yes` and `no` are <true/> and <false/>.
    enum class Element {
        plist,
        dictionary,
        array,
        key,
        string,
        integer,
        real,
        yes,
        no,
        date,
        data
    };

    void start(std::string_view name);
    void text(std::string_view characters); // UTF-8
    void end();

    // The root has ended, or there is a problem.
    bool isDone() const { return m_isDone; }
    // Empty: none.
    const std::string& problem() const { return m_problem; }
    // To be called once, when the list has ended and there is no problem.
    platform::PropertyListValue takeValue() { return std::move(m_root); }

private:
    struct OpenElement {
        Element element = Element::plist;
        platform::PropertyListValue value; // of a container
        std::optional<std::string> key;    // of a dictionary: the next object belongs to it
    };

    void fail(const char* problem);
    bool isInsideLeaf() const;
    bool mayOpen(Element element) const;
    bool isKeyInPlace(Element element) const;
    bool countObject(Element element);
    void closeLeaf(Element element);
    void closeContainer(OpenElement closed);
    void add(std::optional<platform::PropertyListValue> value);

    std::vector<OpenElement> m_open;
    std::string m_text; // of the leaf that is open
    platform::PropertyListValue m_root;
    std::size_t m_objects = 0;
    std::size_t m_contentBytes = 0;
    bool m_isDone = false;
    std::string m_problem;
};

} // namespace quorvel::freedesktop
