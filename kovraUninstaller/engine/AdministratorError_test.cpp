#include "kovraUninstaller/engine/AdministratorError.hpp"

#include <gmock/gmock.h>

namespace kovra {
namespace {

using Kind = EngineError::Kind;

EngineError::Kind kindFor(std::optional<std::string> message, std::optional<std::int64_t> number) {
    return engineErrorFor({std::move(message), number}).kind();
}

TEST(AdministratorError, IsACancellationByItsNumberInAnyLanguage) {
    EXPECT_EQ(kindFor("User canceled.", -128), Kind::adminCancelled);
    EXPECT_EQ(kindFor("Abgebrochen.", -128), Kind::adminCancelled);
    EXPECT_EQ(kindFor(std::nullopt, -128), Kind::adminCancelled);
}

TEST(AdministratorError, IsACancellationByItsTextWhenTheNumberIsMissingOrAnother) {
    EXPECT_EQ(kindFor("User canceled.", std::nullopt), Kind::adminCancelled);
    EXPECT_EQ(kindFor("The operation was CANCELLED.", -60006), Kind::adminCancelled);
}

TEST(AdministratorError, LooksForThatTextAsTheSystemSearchesForPeople) {
    EXPECT_EQ(kindFor("Đã hủy — CanCel — 取消", 1), Kind::adminCancelled);
    EXPECT_EQ(kindFor("cance l, can cel", 1), Kind::failed);
    // Where there is no text, nothing is found.
    EXPECT_EQ(kindFor("\xff cancelled", 1), Kind::failed);
}

TEST(AdministratorError, IsAFailureWithTheMessageOtherwise) {
    const EngineError error = engineErrorFor({"rm: it's busy", 1});
    EXPECT_EQ(error.kind(), Kind::failed);
    EXPECT_STREQ(error.what(), "Privileged removal failed: rm: it's busy");
    EXPECT_EQ(kindFor("message", 128), Kind::failed);
    EXPECT_EQ(kindFor("message", 4294967168), Kind::failed); // whose lower half is -128
}

TEST(AdministratorError, SaysSoWhenItKnowsNothing) {
    EXPECT_STREQ(engineErrorFor({}).what(), "Privileged removal failed: Unknown error");
}

} // namespace
} // namespace kovra
