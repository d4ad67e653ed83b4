#include "freedesktop/calendars/index/stored_message.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvel::freedesktop::calendars {
namespace {

std::string bytesOf(const TranslatableText& message) {
    ByteWriter writer;
    putMessage(writer, message);
    return writer.take();
}

TranslatableText messageOf(const std::string& bytes) {
    ByteReader reader(bytes);
    return takeMessage(reader);
}

TEST(StoredMessage, IsReadWithItsParts) {
    const TranslatableText message("a rule is wrong: {1}",
                                   {{"its {1} is odd", {TranslatableText::verbatim("COUNT")}}});
    const TranslatableText read = messageOf(bytesOf(message));
    EXPECT_EQ(read.text(), "a rule is wrong: {1}");
    ASSERT_EQ(read.values().size(), 1U);
    EXPECT_EQ(read.values()[0].text(), "its {1} is odd");
    ASSERT_EQ(read.values()[0].values().size(), 1U);
    EXPECT_TRUE(read.values()[0].values()[0].isVerbatim());
    EXPECT_EQ(read.english(), "a rule is wrong: its COUNT is odd");
}

TEST(StoredMessage, ThatIsNestedWithoutEndIsReadToABoundedDepth) {
    TranslatableText deep("{1}");
    for (int depth = 0; depth < 1000; ++depth) {
        deep = TranslatableText("{1}", {deep});
    }
    EXPECT_LE(messageOf(bytesOf(deep)).english().size(), 3U);
}

TEST(StoredMessage, ThatIsTornIsEmptyBehindTheTear) {
    const std::string bytes = bytesOf({"{1}", {"one"}});
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        ByteReader reader(std::string_view(bytes).substr(0, length));
        takeMessage(reader);
        EXPECT_FALSE(reader.isWhole()) << length;
    }
}

} // namespace
} // namespace quorvel::freedesktop::calendars
