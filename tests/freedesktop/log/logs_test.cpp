// Standard error, the system log, and several at once.
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "freedesktop/log/combined_log.h"
#include "freedesktop/log/standard_error_log.h"
#include "freedesktop/log/syslog_log.h"

namespace quorvel::freedesktop {
namespace {

class RecordingLog final : public platform::SystemLog {
public:
    void log(std::string_view message) override { messages.emplace_back(message); }

    std::vector<std::string> messages;
};

TEST(StandardErrorLog, WritesOneLineAMessage) {
    testing::internal::CaptureStderr();
    StandardErrorLog().log("100%s of it");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::EndsWith("] 100%s of it\n"));
}

TEST(CombinedLog, PassesMessagesToAllLogs) {
    const auto first = std::make_shared<RecordingLog>();
    const auto second = std::make_shared<RecordingLog>();
    CombinedLog both({first, second});
    both.log("one");
    both.log("two");
    EXPECT_THAT(first->messages, testing::ElementsAre("one", "two"));
    EXPECT_EQ(second->messages, first->messages);
}

TEST(Syslog, WritesNothingToStandardError) {
    testing::internal::CaptureStderr();
    Syslog log;
    log.log("%n%s: a message of the tests");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace quorvel::freedesktop
