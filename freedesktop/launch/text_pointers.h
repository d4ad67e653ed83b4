// Lists of texts as C functions take them. Only for this folder.
#pragma once

#include <string>
#include <vector>

namespace quorvel::freedesktop::launch {

// With a null pointer at the end. Valid as long as the texts do not change.
inline std::vector<const char*> textPointers(const std::vector<std::string>& texts) {
    std::vector<const char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        pointers.push_back(text.c_str());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace quorvel::freedesktop::launch
