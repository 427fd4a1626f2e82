#include "kovraUninstaller/engine/Verify.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

InventoryItem item(const std::string& id, bool informational = false) {
    return {.id = id,
            .category = {},
            .title = "Title of " + id,
            .detail = "detail of " + id,
            .informational = informational};
}

TEST(Residues, AreALineForEachItemInTheScansOrder) {
    EXPECT_THAT(residuesIn({{item("b"), item("a")}}),
                ElementsAre("Title of b (detail of b)", "Title of a (detail of a)"));
}

TEST(Residues, LeaveOutRegisteredInputSourcesAndWhatIsInformational) {
    EXPECT_THAT(residuesIn({{item("tis"), item("tcc", true)}}), IsEmpty());
    EXPECT_THAT(residuesIn({}), IsEmpty());
}

TEST(JoinedResidues, AreOneLineOrNone) {
    EXPECT_EQ(joinedResidues({}), "none");
    EXPECT_EQ(joinedResidues({"A (a)"}), "A (a)");
    EXPECT_EQ(joinedResidues({"A (a)", "B (b)"}), "A (a), B (b)");
}

} // namespace
} // namespace kovra
