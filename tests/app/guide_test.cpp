// The page docs/your-calendars.md, which the windows open: what it lets users type is understood.
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>

#include "app/command_line.h"

namespace quorvel::app {
namespace {

using Words = std::vector<std::string>;

// As a shell separates them; the page quotes with single marks only.
Words wordsOf(const std::string& line) {
    Words words;
    bool isQuoted = false;
    bool isInWord = false;
    for (const char character : line) {
        if (character == '\'') {
            isQuoted = !isQuoted;
        }
        const bool isBlank = character == ' ' && !isQuoted;
        if (!isBlank && !isInWord) {
            words.emplace_back();
        }
        isInWord = !isBlank;
        if (!isBlank && character != '\'') {
            words.back() += character;
        }
    }
    return words;
}

// The lines of the page's blocks of code that start the program.
std::vector<Words> commandsOfThePage() {
    std::ifstream page(QUORVEL_GUIDE);
    std::vector<Words> commands;
    bool isCode = false;
    for (std::string line; std::getline(page, line);) {
        isCode = line.starts_with("```") ? !isCode : isCode;
        if (isCode && line.starts_with("quorvel ")) {
            commands.push_back(wordsOf(line));
        }
    }
    return commands;
}

TEST(Guide, EveryCommandIsUnderstood) {
    const std::vector<Words> commands = commandsOfThePage();
    EXPECT_GE(commands.size(), 10U);
    EXPECT_THAT(commands, testing::Contains(Words{"quorvel", "calendars"}));
    for (const Words& words : commands) {
        std::vector<const char*> arguments;
        for (const std::string& word : words) {
            arguments.push_back(word.c_str());
        }
        const Result<CommandLine> line =
            parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
        EXPECT_TRUE(line) << testing::PrintToString(words) << ": "
                          << (line ? "" : message(line.error()));
    }
}

} // namespace
} // namespace quorvel::app
