#include "shells/window/window_geometry.h"

#include <charconv>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "freedesktop/io/file_replacement.h"
#include "freedesktop/io/regular_file.h"

namespace quorvel::window {

namespace {

constexpr std::size_t longestFile = 1024; // bytes
constexpr int greatestLength = 32767;     // of the coordinates of X11

struct NumberPair {
    int first;
    int second;
};

bool isWithin(int number, int least) {
    return number >= least && number <= greatestLength;
}

// "KEY A B" as a line of the text, ended by a newline.
std::optional<NumberPair> pairOf(std::string_view text, std::string_view key, int least) {
    const std::size_t start = text.find(key);
    const std::size_t end = start == std::string_view::npos ? start : text.find('\n', start);
    if (end == std::string_view::npos || (start > 0 && text[start - 1] != '\n')) {
        return std::nullopt;
    }
    const std::string_view line = text.substr(start + key.size(), end - start - key.size());
    const char* const last = line.data() + line.size();
    NumberPair pair{};
    const auto first = std::from_chars(line.data(), last, pair.first);
    if (first.ec != std::errc() || first.ptr == last || *first.ptr != ' ') {
        return std::nullopt;
    }
    const auto second = std::from_chars(first.ptr + 1, last, pair.second);
    const bool isWhole = second.ec == std::errc() && second.ptr == last;
    return isWhole && isWithin(pair.first, least) && isWithin(pair.second, least)
               ? std::optional(pair)
               : std::nullopt;
}

} // namespace

std::string geometryText(const WindowGeometry& geometry) {
    std::string text;
    if (geometry.size) {
        text += "size " + std::to_string(geometry.size->width) + ' ' +
                std::to_string(geometry.size->height) + '\n';
    }
    if (geometry.position) {
        text += "position " + std::to_string(geometry.position->x) + ' ' +
                std::to_string(geometry.position->y) + '\n';
    }
    return text;
}

WindowGeometry parseGeometry(std::string_view text) {
    WindowGeometry geometry;
    if (const auto size = pairOf(text, "size ", 1)) {
        geometry.size = WindowSize{size->first, size->second};
    }
    if (const auto position = pairOf(text, "position ", -greatestLength)) {
        geometry.position = WindowPosition{position->first, position->second};
    }
    return geometry;
}

WindowGeometry readGeometry(const std::string& file) {
    const auto bytes = freedesktop::readRegularFile(file, longestFile);
    if (!bytes || !*bytes) {
        return {};
    }
    return parseGeometry({reinterpret_cast<const char*>((*bytes)->data()), (*bytes)->size()});
}

void writeGeometry(const std::string& file, const WindowGeometry& geometry) {
    std::error_code failure; // then the file cannot be written either
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), failure);
    static_cast<void>(freedesktop::replaceFile(file, geometryText(geometry)));
}

} // namespace quorvel::window
