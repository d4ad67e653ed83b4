#include "freedesktop/io/file_descriptor.h"

#include <system_error>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

bool isOpenInTheProcess(int number) {
    return ::fcntl(number, F_GETFD) != -1;
}

TEST(FileDescriptor, ClosesWithItsOwner) {
    int number = -1;
    {
        const FileDescriptor file(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        number = file.get();
        EXPECT_TRUE(file.isOpen());
        EXPECT_TRUE(isOpenInTheProcess(number));
    }
    EXPECT_FALSE(isOpenInTheProcess(number));
}

TEST(FileDescriptor, ANegativeNumberIsNotOpen) {
    EXPECT_FALSE(FileDescriptor(-1).isOpen());
    EXPECT_FALSE(FileDescriptor().isOpen());
}

TEST(FileDescriptor, ClosesOnceAndReportsTheError) {
    FileDescriptor file(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    const int number = file.get();
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(isOpenInTheProcess(number));
    EXPECT_EQ(file.close().error(), std::errc::bad_file_descriptor);
}

} // namespace
} // namespace quorvel::freedesktop
