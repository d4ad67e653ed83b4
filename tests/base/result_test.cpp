#include "base/result.h"

#include <memory>
#include <string>
#include <variant>

#include <gtest/gtest.h>

namespace quorvel {
namespace {

Result<int> half(int number) {
    if (number % 2 != 0) {
        return Error{"is odd", std::to_string(number), "take an even one"};
    }
    return number / 2;
}

Result<void> mustBeEven(int number) {
    const auto result = half(number);
    return result ? Result<void>() : result.error();
}

TEST(Result, HoldsAValue) {
    const auto result = half(8);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, 4);
    EXPECT_THROW((void)result.error(), std::bad_variant_access);
}

TEST(Result, HoldsAnError) {
    const auto result = half(7);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (Error{"is odd", "7", "take an even one"}));
    EXPECT_THROW((void)result.value(), std::bad_variant_access);
}

TEST(Result, OfNothingSucceedsOrFails) {
    EXPECT_TRUE(mustBeEven(2));
    EXPECT_EQ(mustBeEven(3).error().where, "3");
}

TEST(Result, MovesItsValueOut) {
    Result<std::unique_ptr<int>> result(std::make_unique<int>(5));
    EXPECT_EQ(**result, 5);
    const std::unique_ptr<int> value = *std::move(result);
    EXPECT_EQ(*value, 5);
}

TEST(Result, ErrorMayBeOfAnotherType) {
    const Result<std::string, int> result(7);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), 7);
}

TEST(ErrorMessage, LeavesOutWhatIsEmpty) {
    EXPECT_EQ(message({"it is odd", "'a'", "take another"}), "'a': it is odd: take another");
    EXPECT_EQ(message({"it is odd", "", "take another"}), "it is odd: take another");
    EXPECT_EQ(message({"it is odd", "'a'", ""}), "'a': it is odd");
    EXPECT_EQ(message({"it is odd", "", ""}), "it is odd");
}

} // namespace
} // namespace quorvel
