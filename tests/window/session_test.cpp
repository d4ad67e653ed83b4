// A long session of random input on the real window; the same seed repeats the same session.
#include <random>

#include <gmock/gmock.h>

#include "tests/test_seed.h"
#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr int steps = 1000;
constexpr int stepsPerBatch = 40; // between two changes of the files

class SessionTest : public WindowTest {
protected:
    int number(int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(m_random);
    }
    std::string coordinate(int most) { return std::to_string(number(0, most)); }

    // A drag outside the rows has perhaps moved the window.
    void addReturn(std::vector<std::string>& words) {
        words.insert(words.end(), {"windowmove", window(), "0", "0"});
    }
    // Below the header, whose button closes the window. It is reached nevertheless where a drag
    // outside the rows has moved the window: then the session continues in a new one.
    void addMove(std::vector<std::string>& words) {
        words.insert(words.end(), {"mousemove", coordinate(330), std::to_string(number(45, 445))});
    }
    void addDrag(std::vector<std::string>& words) {
        addReturn(words);
        addMove(words);
        words.insert(words.end(), {"mousedown", "1"});
        for (int i = number(1, 3); i > 0; --i) {
            addMove(words);
        }
        words.insert(words.end(), {"mouseup", "1"});
    }
    void addClick(std::vector<std::string>& words, const std::string& button) {
        words.insert(words.end(), {"mousedown", button, "mouseup", button});
    }
    // A hidden window loses the keyboard focus.
    void addHiding(std::vector<std::string>& words) {
        words.insert(words.end(),
                     {"windowunmap", window(), "windowmap", window(), "windowfocus", window()});
    }
    void addStep(std::vector<std::string>& words) {
        switch (number(0, 11)) {
        case 0:
            words.insert(words.end(), {"key", "F5"});
            break;
        case 1:
            words.insert(words.end(), {"key", number(0, 1) == 0 ? "Down" : "Up"});
            break;
        case 2:
            addClick(words, number(0, 1) == 0 ? "4" : "5");
            break;
        case 3:
            addReturn(words);
            addMove(words);
            addClick(words, "1");
            break;
        case 4:
            words.insert(words.end(), {"windowsize", window(), std::to_string(number(160, 500)),
                                       std::to_string(number(60, 500))});
            break;
        case 5:
            addHiding(words);
            break;
        default:
            addDrag(words);
        }
    }
    // Never an action of 0: rows that are created with it cannot be pulled later either.
    void changeFiles() {
        writeSettings("<key>textSize</key><integer>" + std::to_string(number(8, 30)) +
                      "</integer><key>swipeAction</key><integer>" + std::to_string(number(1, 3)) +
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

    std::mt19937 m_random{testSeed()};
};

TEST_F(SessionTest, SurvivesAThousandRandomSteps) {
    writeThreeEvents();
    show();
    const Picture before = picture();
    const Picture wholeBefore = wholePicture();
    for (int step = 0; step < steps; step += stepsPerBatch) {
        std::vector<std::string> words;
        for (int i = 0; i < stepsPerBatch; ++i) {
            addStep(words);
        }
        const bool isOpen = tryInput(words);
        changeFiles();
        const std::optional<int> status = m_program->exitStatus(0.2); // time to present
        ASSERT_TRUE(isOpen || status == 0) << errors();
        if (status) {
            ASSERT_EQ(status, 0) << errors();
            show();
        }
    }
    // The window still shows and opens events.
    writeSettings("");
    writeThreeEvents();
    input({"windowfocus", window(), "key", "F5"});
    steadyPicture(); // the last request for another size may still be under way
    input({"windowmove", window(), "0", "0", "windowsize", window(),
           std::to_string(wholeBefore.width), std::to_string(wholeBefore.height)});
    EXPECT_TRUE(becomesTrue(20, [&] { return picture().height == before.height; }));
    moveTo(before.width - 1, before.height - 1);
    EXPECT_TRUE(becomesTrue(20, [&] {
        click(1);  // closes a menu, then takes the focus from the rows
        rest(0.6); // longer than a double click
        return picture() == before;
    }));
    const std::size_t count = opened().size();
    drag(60, 10, 60 + distanceForOffset(90), 10);
    ASSERT_TRUE(opensLinks(count + 1));
    EXPECT_THAT(opened().back(), EndsWith("/first?o=794833200.0"));
    key("Escape");
    EXPECT_EQ(m_program->exitStatus(20), 0) << errors();
    EXPECT_THAT(errors(), Not(HasSubstr("Sanitizer")));
    EXPECT_THAT(errors(), Not(HasSubstr("runtime error")));
}

} // namespace
} // namespace quorvel::window
