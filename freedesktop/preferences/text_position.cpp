#include "freedesktop/preferences/text_position.h"

#include <algorithm>

namespace quorvel::freedesktop {

std::string positionText(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    std::size_t line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const bool isFirstOfPair = before[i] == '\r' && text.substr(i + 1, 1) == "\n";
        if ((before[i] == '\r' && !isFirstOfPair) || before[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    const std::string_view inLine = before.substr(lineStart);
    const auto characters = std::count_if(inLine.begin(), inLine.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; // no continuation byte
    });
    return std::to_string(line) + ':' + std::to_string(characters + 1);
}

} // namespace quorvel::freedesktop
