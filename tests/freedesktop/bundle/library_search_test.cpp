// The search for a library before a program that needs it is started.
#include "freedesktop/bundle/library_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>

namespace quorvel::freedesktop {
namespace {

using testing::HasSubstr;

// Whether the process uses the library; asking does not load it.
bool isLoaded(const char* name) {
    void* const library = dlopen(name, RTLD_LAZY | RTLD_NOLOAD);
    if (library != nullptr) {
        dlclose(library);
    }
    return library != nullptr;
}

TEST(LibrarySearchTest, FindsALibraryOfTheSystemWithoutLoadingIt) {
    const char* const toolkit = "libgtk-3.so.0";
    ASSERT_FALSE(isLoaded(toolkit));
    EXPECT_TRUE(findLibrary(toolkit));
    EXPECT_FALSE(isLoaded(toolkit));
}

TEST(LibrarySearchTest, ReportsALibraryThatIsNowhere) {
    const Result<void, std::string> found = findLibrary("libquorvel-is-missing.so.3");
    ASSERT_FALSE(found);
    EXPECT_THAT(found.error(), HasSubstr("libquorvel-is-missing.so.3: cannot open"));
}

// A name with a slash stands for the library that only the loader finds.
TEST(LibrarySearchTest, AsksTheLoaderForALibraryElsewhere) {
    const std::string elsewhere = QUORVEL_TEST_BUNDLES "/foreign.so";
    EXPECT_TRUE(findLibrary(elsewhere));
    EXPECT_TRUE(isLoaded(elsewhere.c_str()));
}

} // namespace
} // namespace quorvel::freedesktop
