#include "freedesktop/launch/exec_line.h"

#include <algorithm>
#include <string_view>

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop {

namespace {

bool isLinkCode(std::string_view text) {
    return text == "%u" || text == "%U";
}

bool takesLinkAsValue(std::string_view word) {
    const std::size_t equals = word.find('=');
    return word.starts_with('-') && equals != std::string_view::npos &&
           isLinkCode(word.substr(equals + 1));
}

// Removes the codes for files and the deprecated ones.
std::string withoutCodes(std::string_view word, const EntryFacts& facts) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%') {
            text += word[i];
            continue;
        }
        ++i;
        const char code = i < word.size() ? word[i] : '%';
        if (code == '%') {
            text += '%';
        } else if (code == 'c') {
            text += facts.name;
        } else if (code == 'k') {
            text += facts.file;
        }
    }
    return text;
}

void append(std::vector<std::string>& arguments, std::string_view word, const EntryFacts& facts,
            std::span<const std::string> links) {
    const std::span<const std::string> first = links.first(std::min<std::size_t>(links.size(), 1));
    if (isLinkCode(word)) {
        const auto taken = word == "%U" ? links : first;
        arguments.insert(arguments.end(), taken.begin(), taken.end());
    } else if (takesLinkAsValue(word)) {
        if (!first.empty()) {
            arguments.push_back(std::string(word.substr(0, word.size() - 2)) + first.front());
        }
    } else if (word == "%i") {
        if (!facts.icon.empty()) {
            arguments.insert(arguments.end(), {"--icon", facts.icon});
        }
    } else {
        std::string text = withoutCodes(word, facts);
        if (!text.empty() || word.empty()) {
            arguments.push_back(std::move(text));
        }
    }
}

} // namespace

std::optional<std::vector<std::string>> argumentsOf(const std::string& execLine,
                                                    const EntryFacts& facts,
                                                    std::span<const std::string> links) {
    int count = 0;
    char** words = nullptr;
    // This only splits and unquotes the line; it runs nothing.
    if (g_shell_parse_argv(execLine.c_str(), &count, &words, nullptr) == FALSE) {
        return std::nullopt;
    }
    const TextsHandle owned(words);
    if (isLinkCode(words[0])) {
        return std::nullopt; // the link would be the program
    }
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) {
        append(arguments, words[i], facts, links);
    }
    if (arguments.empty() || arguments.front().empty()) {
        return std::nullopt;
    }
    return arguments;
}

} // namespace quorvel::freedesktop
