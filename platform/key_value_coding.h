// Reading an object's values by name, for hosts that know an object only as the platform's class.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/geometry.h"
#include "platform/ns_date.h"
#include "platform/ns_url.h"
#include "platform/ui_color.h"
#include "platform/ui_image.h"

namespace quorvel::platform {

class KeyValueCoding;
class UIView;

// std::monostate: the value is not set. A null pointer is never held.
using KeyValue =
    std::variant<std::monostate, bool, std::int64_t, CGFloat, std::string, NSDate, NSURL, UIColor,
                 std::shared_ptr<const UIImage>, std::shared_ptr<UIView>,
                 std::vector<std::shared_ptr<const KeyValueCoding>>, std::vector<std::string>>;

class KeyValueCoding {
public:
    virtual ~KeyValueCoding() = default;
    // The names of the values that the class adds to its platform ancestors, in declaration order.
    virtual std::vector<std::string_view> keys() const { return {}; }
    // std::monostate for an unknown name too.
    virtual KeyValue valueForKey(std::string_view) const { return {}; }
};

} // namespace quorvel::platform
