#include "freedesktop/log/log_line.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include <unistd.h>

#include "base/utf8.h"
#include "freedesktop/plain_text/characters.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::size_t longestMessage = 4096; // bytes

bool isEscaped(char32_t character) {
    return isControlCharacter(character) || isLineEnd(character) || changesDirection(character);
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
        const DecodedCharacter next = decodeCharacter(message);
        const std::string_view bytes = message.substr(0, next.length);
        if (!next.character || isEscaped(*next.character)) {
            appendEscaped(line, bytes);
        } else {
            line += bytes;
        }
        message.remove_prefix(next.length);
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
