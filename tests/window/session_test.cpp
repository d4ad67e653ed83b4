// A long session of random input on the real window, the same for the same seed.
#include <cstdlib>
#include <iostream>
#include <random>

#include <gmock/gmock.h>

#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int steps = 1000;
constexpr int stepsABatch = 40; // of input, between two changes of the files

unsigned seedOfSession() {
    const char* seed = std::getenv("QUORVEL_SEED");
    return seed != nullptr ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : 20260310U;
}

class SessionTest : public WindowTest {
protected:
    int number(int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(m_random);
    }
    std::string somewhere(int most) { return std::to_string(number(0, most)); }

    void addMove(std::vector<std::string>& words) {
        words.insert(words.end(), {"mousemove", somewhere(330), somewhere(400)});
    }
    void addDrag(std::vector<std::string>& words) {
        addMove(words);
        words.insert(words.end(), {"mousedown", "1"});
        for (int i = number(1, 3); i > 0; --i) {
            addMove(words);
        }
        words.insert(words.end(), {"mouseup", "1"});
    }
    void addStep(std::vector<std::string>& words) {
        switch (number(0, 9)) {
        case 0:
            words.insert(words.end(), {"key", "F5"});
            break;
        case 1:
            words.insert(words.end(), {"key", number(0, 1) == 0 ? "Down" : "Up"});
            break;
        case 2:
            words.insert(words.end(), {"click", number(0, 1) == 0 ? "4" : "5"});
            break;
        case 3:
            addMove(words);
            words.insert(words.end(), {"click", "1"});
            break;
        default:
            addDrag(words);
        }
    }
    void changeFiles() {
        writeSettings("<key>textSize</key><integer>" + std::to_string(number(8, 30)) +
                      "</integer><key>swipeAction</key><integer>" + std::to_string(number(0, 3)) +
                      "</integer><key>maxHeight</key><integer>" + std::to_string(number(40, 400)) +
                      "</integer><key>limitMaxHeight</key>" +
                      (number(0, 1) == 0 ? "<true/>" : "<false/>"));
        std::string events;
        for (int i = number(0, 12); i > 0; --i) {
            events +=
                event("e" + std::to_string(i), "Event " + std::to_string(number(0, 99)),
                      "20260310T1" + std::to_string(number(1, 9)) + "0000Z", "20260310T200000Z");
        }
        writeCalendar(events);
    }

    std::mt19937 m_random{seedOfSession()};
};

TEST_F(SessionTest, SurvivesAThousandRandomSteps) {
    std::cout << "seed: " << seedOfSession() << " (QUORVEL_SEED chooses another)\n";
    writeThreeEvents();
    show();
    for (int step = 0; step < steps; step += stepsABatch) {
        std::vector<std::string> words;
        for (int i = 0; i < stepsABatch; ++i) {
            addStep(words);
        }
        input(words);
        changeFiles();
        ASSERT_EQ(m_program->exitStatus(0.05), std::nullopt) << errors();
    }
    EXPECT_FALSE(opened().empty()); // some of the pulls went far enough
    key("Escape");
    EXPECT_EQ(m_program->exitStatus(20), 0) << errors();
    EXPECT_THAT(errors(), Not(HasSubstr("Sanitizer")));
    EXPECT_THAT(errors(), Not(HasSubstr("runtime error")));
}

} // namespace
} // namespace quorvel::window
