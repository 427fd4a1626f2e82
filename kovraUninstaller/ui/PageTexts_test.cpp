#include "kovraUninstaller/ui/PageTexts.hpp"

#include <gtest/gtest.h>

namespace kovra {
namespace {

TEST(PageTexts, OfferTheRemovalBeforeItBegins) {
    for (const Phase& phase : {Phase{phase::Scanning{}}, Phase{phase::Ready{}}}) {
        EXPECT_EQ(title(phase), "Uninstall kovra");
        EXPECT_EQ(subtitle(phase),
                  "This removes kovra from this Mac, including your sign-in and settings.");
    }
}

TEST(PageTexts, AnnounceThePasswordDialogWhileTheStepsRun) {
    EXPECT_EQ(title(phase::Uninstalling{}), "Uninstall kovra");
    EXPECT_EQ(subtitle(phase::Uninstalling{}),
              "Your Mac may ask for your password to remove kovra from the system Input Methods "
              "folder.");
}

TEST(PageTexts, SayThatThereIsNothingToRemove) {
    EXPECT_EQ(title(phase::NothingFound{}), "kovra was not found");
    EXPECT_EQ(subtitle(phase::NothingFound{}), "There is nothing to remove on this Mac.");
}

TEST(PageTexts, TakeLeaveWhenNothingIsLeft) {
    EXPECT_EQ(title(phase::Done{}), "Goodbye.");
    EXPECT_EQ(subtitle(phase::Done{}), "kovra was removed. Thanks for giving it a try.");
}

TEST(PageTexts, SpeakOfWhatIsLeftWhateverItIs) {
    EXPECT_EQ(title(phase::Done{{"one"}}), "kovra was removed");
    EXPECT_EQ(subtitle(phase::Done{{"one", "two"}}),
              "Some items could not be removed. Restarting your Mac usually clears them.");
}

TEST(PageTexts, NameTheFailedStepAndTheReason) {
    const Phase failed =
        phase::Failed{"Remove kovra apps", "Administrator access was not granted."};
    EXPECT_EQ(title(failed), "Couldn't finish uninstalling");
    EXPECT_EQ(subtitle(failed), "Remove kovra apps: Administrator access was not granted.");
}

TEST(PageTexts, AreSaidAloudAsTwoSentences) {
    EXPECT_EQ(announcementOf(phase::NothingFound{}),
              "kovra was not found. There is nothing to remove on this Mac.");
    EXPECT_EQ(announcementOf(phase::Done{}),
              "Goodbye. kovra was removed. Thanks for giving it a try.");
}

} // namespace
} // namespace kovra
