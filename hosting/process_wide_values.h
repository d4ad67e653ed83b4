// The settings of the process, read by name.
#pragma once

#include <string_view>
#include <vector>

#include "platform/key_value_coding.h"

namespace quorvel {

// Each call reads the current value of the variable.
class ProcessWideValues : public platform::KeyValueCoding {
public:
    static constexpr std::string_view className() { return "ProcessWideValues"; }

    std::vector<std::string_view> keys() const override;
    platform::KeyValue valueForKey(std::string_view key) const override;
};

} // namespace quorvel
