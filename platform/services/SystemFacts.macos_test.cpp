// The Mac's facts of the system, on stand-ins for its functions.

#include "platform/services/SystemFacts.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/FoundationSymbols.hpp"
#include "platform/foundation/NSProcessInfo.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/objc/testing/AddMethod.hpp"
#include "platform/testing/darwin/Darwin.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>

namespace platform {
namespace {

using foundation::toString;

TEST(DirectoriesOnAMac, AreThoseOfFoundation) {
    const objc::AutoreleasePool pool;
    EXPECT_EQ(homeDirectory(), toString(::NSHomeDirectory()));
    EXPECT_EQ(temporaryDirectory(), toString(::NSTemporaryDirectory()));
    EXPECT_NE(homeDirectory(), temporaryDirectory());
}

TEST(CreationDateOnAMac, IsTheBirthTime) {
    const auto born = creationDate("/known");
    ASSERT_TRUE(born);
    EXPECT_EQ(born->time_since_epoch(), std::chrono::seconds(1000) + std::chrono::nanoseconds(7));
    EXPECT_FALSE(creationDate("/unknown"));
}

foundation::NSOperatingSystemVersion versionOf(foundation::NSObject*) {
    return {13, 6, 9};
}

TEST(OperatingSystemVersionOnAMac, IsThatOfNSProcessInfo) {
    objc::testing::addMethod<versionOf>("NSProcessInfo", "operatingSystemVersion");
    const auto version = operatingSystemVersion();
    EXPECT_EQ(version.major, 13);
    EXPECT_EQ(version.minor, 6);
    EXPECT_EQ(version.patch, 9);
}

TEST(SystemControlStringOnAMac, IsReadUpToItsNul) {
    EXPECT_EQ(systemControlString("hw.model"), "Mac14,2");
}

TEST(SystemControlStringOnAMacDeathTest, AbortsForAnUnknownName) {
    EXPECT_EXIT(static_cast<void>(systemControlString("hw.unknown")),
                ::testing::KilledBySignal(SIGABRT), "has no end");
}

} // namespace
} // namespace platform

int lstat(const char* path, darwin_stat* status) {
    if (std::string_view(path) != "/known") {
        return -1;
    }
    status->st_mtimespec = {.tv_sec = 2000, .tv_nsec = 8};
    status->st_birthtimespec = {.tv_sec = 1000, .tv_nsec = 7};
    return 0;
}

// As the system's: without a buffer it returns the size.
int sysctlbyname(const char* name, void* value, std::size_t* size, void*, std::size_t) {
    constexpr std::string_view model{"Mac14,2\0", 8};
    if (std::string_view(name) != "hw.model") {
        errno = ENOENT;
        return -1;
    }
    if (value != nullptr) {
        std::memcpy(value, model.data(), model.size());
    }
    *size = model.size();
    return 0;
}
