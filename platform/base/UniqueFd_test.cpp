#include "platform/base/UniqueFd.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace platform {
namespace {

int openNull() {
    return ::open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

TEST(UniqueFd, ClosesItsDescriptorOnceAtItsEnd) {
    int descriptor = -1;
    {
        const UniqueFd owner(openNull());
        descriptor = owner.get();
        EXPECT_TRUE(owner);
        EXPECT_TRUE(isOpen(descriptor));
    }
    EXPECT_FALSE(isOpen(descriptor));
}

TEST(UniqueFd, MovesItsDescriptor) {
    UniqueFd first(openNull());
    const int descriptor = first.get();
    UniqueFd second(std::move(first));
    UniqueFd third(openNull());
    const int replaced = third.get();
    third = std::move(second);
    EXPECT_EQ(third.get(), descriptor);
    EXPECT_FALSE(isOpen(replaced));
    EXPECT_TRUE(isOpen(descriptor));
}

TEST(UniqueFd, ClosesNothingAfterRelease) {
    const int descriptor = UniqueFd(openNull()).release();
    EXPECT_TRUE(isOpen(descriptor));
    ::close(descriptor);
    EXPECT_FALSE(UniqueFd());
}

TEST(RetryInterrupted, RepeatsOnlyAfterEintr) {
    int calls = 0;
    EXPECT_EQ(retryInterrupted([&] {
                  errno = EINTR;
                  return ++calls < 3 ? -1 : 7;
              }),
              7);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(retryInterrupted([&] {
                  errno = EIO;
                  ++calls;
                  return -1;
              }),
              -1);
    EXPECT_EQ(calls, 4);
}

} // namespace
} // namespace platform
