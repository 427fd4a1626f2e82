#include "kovraUninstaller/app/UninstallerPage.hpp"
#include "kovraUninstaller/app/testing/HarmlessService.hpp"
#include "platform/appkit/testing/AccessibilityStandIns.hpp"
#include "platform/appkit/testing/Events.hpp"
#include "platform/appkit/testing/MountingStandIns.hpp"
#include "platform/appkit/testing/RunLoop.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace kovra {
namespace {

using platform::appkit::NSWindow;
using platform::appkit::testing::announcements;
using platform::appkit::testing::keyDown;
using platform::appkit::testing::served;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace appkit = platform::appkit;
namespace objc = platform::objc;

constexpr const char* ready =
    "Uninstall kovra. This removes kovra from this Mac, including your sign-in and settings.";
constexpr const char* uninstalling =
    "Uninstall kovra. Your Mac may ask for your password to remove kovra from the system Input "
    "Methods folder.";
constexpr const char* nothingFound = "kovra was not found. There is nothing to remove on this Mac.";
constexpr const char* goodbye = "Goodbye. kovra was removed. Thanks for giving it a try.";
constexpr const char* refused =
    "Couldn't finish uninstalling. Remove kovra apps: Administrator access was not granted.";

class UninstallerPageTest : public ::testing::Test {
  protected:
    UninstallerPageTest() {
        appkit::testing::recordAccessibility();
        appkit::testing::addMountingStandIns();
        window_->setReleasedWhenClosed(false);
    }

    ~UninstallerPageTest() override {
        window_->setContentView(nullptr);
        appkit::testing::recorded = {};
        appkit::testing::mac = {};
    }

    void open(std::unique_ptr<UninstallService> service) {
        page_ = std::make_unique<UninstallerPage>(std::move(service), [this] { ++quits_; });
        page_->mountIn(window_.get());
    }

    // Presses the page's main button by keyboard.
    void pressButton() {
        auto* view =
            objc::InstanceMethod<"NSWindow", "contentView", appkit::NSView*()>::send(window_.get());
        keyDown(view, "\t");
        keyDown(view, " ");
    }

    [[nodiscard]] static bool announces(const std::string& text) {
        return served([&] { return !announcements().empty() && announcements().back() == text; });
    }

    objc::AutoreleasePool pool_{};
    objc::Retained<NSWindow> window_ = objc::adopt(NSWindow::alloc()->initWithContentRect(
        {{0, 0}, {480, 450}}, 0, NSWindow::backingBuffered, true));
    std::unique_ptr<UninstallerPage> page_{};
    int quits_ = 0;
};

TEST_F(UninstallerPageTest, AnnouncesEachPhaseOnceWhenItHasBegun) {
    open(testing::harmlessService(testing::oneItem()));
    EXPECT_THAT(announcements(), IsEmpty());
    EXPECT_TRUE(announces(ready));
    pressButton();
    EXPECT_TRUE(announces(goodbye));
    EXPECT_THAT(announcements(), ElementsAre(ready, uninstalling, goodbye));
}

TEST_F(UninstallerPageTest, AnnouncesAFailureAndEachFurtherAttempt) {
    open(testing::harmlessService(testing::oneItem(), testing::Prompt::refused));
    EXPECT_TRUE(announces(ready));
    pressButton();
    EXPECT_TRUE(announces(refused));
    pressButton();
    EXPECT_TRUE(served([] { return announcements().size() == 5; }));
    EXPECT_THAT(announcements(), ElementsAre(ready, uninstalling, refused, uninstalling, refused));
}

TEST_F(UninstallerPageTest, QuitsByItsButton) {
    open(testing::harmlessService({}));
    EXPECT_TRUE(announces(nothingFound));
    EXPECT_EQ(quits_, 0);
    pressButton();
    EXPECT_EQ(quits_, 1);
}

TEST_F(UninstallerPageTest, IsLightWhateverTheAppearance) {
    open(testing::harmlessService({}));
    EXPECT_TRUE(appkit::testing::mac.appearance);
    EXPECT_TRUE(announces(nothingFound));
}

} // namespace
} // namespace kovra
