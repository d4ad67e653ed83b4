// Messages stay one line, whatever they hold.
#include "freedesktop/log/log_line.h"

#include <cctype>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

TEST(LogLine, DoesNotChangeOrdinaryText) {
    EXPECT_EQ(printableMessage("QRV: unable to load preferences."),
              "QRV: unable to load preferences.");
    EXPECT_EQ(printableMessage("100% %s %n"), "100% %s %n");
    EXPECT_EQ(printableMessage("Grüße 明日 😀"), "Grüße 明日 😀");
    EXPECT_EQ(printableMessage(""), "");
}

TEST(LogLine, EscapesControls) {
    EXPECT_EQ(printableMessage("a\nb\tc\rd\x1B[31m\x7F"), "a\\nb\\tc\\x0Dd\\x1B[31m\\x7F");
    EXPECT_EQ(printableMessage(std::string_view("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(printableMessage("a\xC2\x85z\xE2\x80\xA8"), "a\\xC2\\x85z\\xE2\\x80\\xA8");
    EXPECT_EQ(printableMessage("end\n"), "end");
    EXPECT_EQ(printableMessage("end\n\n"), "end\\n");
}

TEST(LogLine, EscapesWhatTurnsTheDirection) {
    EXPECT_EQ(printableMessage("a\u202Eb\u202C"), "a\\xE2\\x80\\xAEb\\xE2\\x80\\xAC");
    EXPECT_EQ(printableMessage("\u2066\u2069"), "\\xE2\\x81\\xA6\\xE2\\x81\\xA9");
    EXPECT_EQ(printableMessage("\u05E4\u200F\u200E\u061C"), "\u05E4\u200F\u200E\u061C");
    EXPECT_EQ(printableMessage("\U0001F468\u200D\U0001F467"), "\U0001F468\u200D\U0001F467");
}

TEST(LogLine, EscapesWhatIsNoText) {
    EXPECT_EQ(printableMessage("a\xFFz"), "a\\xFFz");
    EXPECT_EQ(printableMessage("\xC3"), "\\xC3");
    EXPECT_EQ(printableMessage("\xC0\xAF"), "\\xC0\\xAF");
    EXPECT_EQ(printableMessage("\xED\xA0\x80"), "\\xED\\xA0\\x80");
    EXPECT_EQ(printableMessage("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");
    EXPECT_EQ(printableMessage("\xE2\x82"), "\\xE2\\x82");
}

TEST(LogLine, CutsLongMessages) {
    const std::string cut = printableMessage(std::string(1 << 20, 'x'));
    EXPECT_EQ(cut, std::string(4096, 'x') + "...");
    EXPECT_EQ(printableMessage(std::string(4096, 'x')), std::string(4096, 'x'));
    EXPECT_LE(printableMessage(std::string(1 << 20, '\x01')).size(), 4110U);
}

TEST(LogLine, HasTimeAndProcess) {
    const std::string line = logLine("hello\nworld");
    std::string form = line.substr(0, 23);
    for (char& c : form) {
        c = std::isdigit(static_cast<unsigned char>(c)) != 0 ? '0' : c;
    }
    EXPECT_EQ(form, "0000-00-00 00:00:00.000");
    std::ostringstream rest;
    rest << " quorvel[" << getpid() << ':' << std::hex << gettid() << "] hello\\nworld";
    EXPECT_EQ(line.substr(23), rest.str());
}

} // namespace
} // namespace quorvel::freedesktop
