// The modes of the run loop: default, event tracking (a menu is open), modal panel (a dialog).

#include "platform/appkit/testing/RunLoop.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/services/Queues.hpp"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace platform::appkit {
namespace {

using testing::served;

TEST(MainQueue, IsServedInEachModeOfTheApplicationsLoop) {
    for (NSString* mode :
         {NSDefaultRunLoopMode, NSEventTrackingRunLoopMode, NSModalPanelRunLoopMode}) {
        std::string order;
        std::thread([&order] {
            mainQueue().post([&order] { order += "first "; });
            mainQueue().post([&order] { order += "second"; });
        }).join();
        EXPECT_TRUE(served([&order] { return order == "first second"; }, mode))
            << foundation::toString(mode) << ": " << order;
    }
}

} // namespace
} // namespace platform::appkit
