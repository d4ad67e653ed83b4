// Builds a property list from the elements of its XML.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// Expects the elements and texts in document order; each end closes the innermost open element. The
// PropertyListBudget is enforced. Everything after an error or the end of the root is ignored.
class PropertyListBuilder {
public:
    // `yes` and `no` are <true/> and <false/>.
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

    // The root has ended, or there was an error.
    bool isDone() const { return m_isDone; }
    // Call it once, when the builder is done.
    Result<platform::PropertyListValue> takeResult();

private:
    struct OpenElement {
        Element element = Element::plist;
        platform::PropertyListValue value; // only of a container
        std::optional<std::string> key;    // only of a dictionary: the key of the next object
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
    std::string m_text; // of the open leaf
    platform::PropertyListValue m_root;
    std::size_t m_objects = 0;
    std::size_t m_contentBytes = 0;
    bool m_isDone = false;
    std::string m_problem; // empty: none
};

} // namespace quorvel::freedesktop
