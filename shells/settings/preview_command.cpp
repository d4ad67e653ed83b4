#include "shells/settings/preview_command.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::translated;

namespace {

// As the command reads numbers, whatever the language.
std::string numberText(double number) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), result.ptr};
}

} // namespace

std::vector<std::string> argumentsOf(const PreviewCommand& command) {
    constexpr double leastTextScale = 0.5; // what the command accepts
    constexpr double mostTextScale = 3;
    std::vector<std::string> arguments{
        command.program,
        "snapshot",
        "-o",
        command.picture,
        "--preferences",
        command.preferencesFolder,
        "--appearance",
        command.isDark ? "dark" : "light",
        "--scale",
        std::to_string(command.scale),
        "--text-scale",
        numberText(std::clamp(command.textScale, leastTextScale, mostTextScale)),
        "--width",
        numberText(command.width)};
    if (command.isSample) {
        arguments.emplace_back("--sample");
    }
    return arguments;
}

std::string failureReason(const std::string& errors) {
    constexpr std::string_view prefix = "quorvel: ";
    std::string_view line = errors;
    while (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    line.remove_prefix(line.rfind('\n') == std::string_view::npos ? 0 : line.rfind('\n') + 1);
    if (line.starts_with(prefix)) {
        line.remove_prefix(prefix.size());
    }
    return line.empty() ? translated(text::noReason) : std::string(line);
}

} // namespace quorvel::settings_pages
