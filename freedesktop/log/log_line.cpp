#include "freedesktop/log/log_line.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t longestMessage = 4096; // bytes

bool isContinuation(unsigned char c) {
    return (c & 0xC0U) == 0x80U;
}

unsigned char byteAt(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
}

// Bytes of the well-formed character at the beginning; 0 where there is none.
std::size_t characterLength(std::string_view text) {
    const unsigned char first = byteAt(text, 0);
    const unsigned char second = byteAt(text, 1);
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xC2 || first > 0xF4 || !isContinuation(second)) {
        return 0;
    }
    if (first < 0xE0) {
        return 2;
    }
    if (!isContinuation(byteAt(text, 2))) {
        return 0;
    }
    if (first < 0xF0) {
        const bool overlong = first == 0xE0 && second < 0xA0;
        const bool surrogate = first == 0xED && second > 0x9F;
        return overlong || surrogate ? 0 : 3;
    }
    const bool overlong = first == 0xF0 && second < 0x90;
    const bool beyondUnicode = first == 0xF4 && second > 0x8F;
    return overlong || beyondUnicode || !isContinuation(byteAt(text, 3)) ? 0 : 4;
}

// C0, DEL, C1, and the line and paragraph separators.
bool isControl(std::string_view character) {
    const unsigned char first = byteAt(character, 0);
    const unsigned char second = byteAt(character, 1);
    if (character.size() == 1) {
        return first < 0x20 || first == 0x7F;
    }
    if (character.size() == 2) {
        return first == 0xC2 && second < 0xA0;
    }
    return first == 0xE2 && second == 0x80 &&
           (byteAt(character, 2) == 0xA8 || byteAt(character, 2) == 0xA9);
}

void appendEscaped(std::string& line, std::string_view bytes) {
    if (bytes == "\n") {
        line += "\\n";
    } else if (bytes == "\t") {
        line += "\\t";
    } else {
        for (const char c : bytes) {
            char text[8];
            std::snprintf(text, sizeof text, "\\x%02X", static_cast<unsigned char>(c));
            line += text;
        }
    }
}

std::string timeStamp() {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    const auto milliseconds =
        duration_cast<std::chrono::milliseconds>(now.time_since_epoch()) % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[32];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    char fraction[8];
    std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>(milliseconds.count()));
    return std::string(text, length) + fraction;
}

} // namespace

std::string printableMessage(std::string_view message) {
    if (!message.empty() && message.back() == '\n') {
        message.remove_suffix(1);
    }
    std::string line;
    while (!message.empty() && line.size() < longestMessage) {
        const std::size_t length = characterLength(message);
        const std::string_view character = message.substr(0, length == 0 ? 1 : length);
        if (length == 0 || isControl(character)) {
            appendEscaped(line, character);
        } else {
            line += character;
        }
        message.remove_prefix(character.size());
    }
    if (!message.empty()) {
        line += "...";
    }
    return line;
}

std::string logLine(std::string_view message) {
    char process[64];
    std::snprintf(process, sizeof process, " quorvel[%ld:%lx] ", static_cast<long>(getpid()),
                  static_cast<unsigned long>(gettid()));
    return timeStamp() + process + printableMessage(message);
}

} // namespace quorvel::freedesktop
