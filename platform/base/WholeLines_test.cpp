#include "platform/base/WholeLines.hpp"

#include <gmock/gmock.h>

#include <vector>

namespace platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The parts that arrive when the text comes in these pieces.
std::vector<std::string> partsOf(const std::vector<std::string>& pieces) {
    std::vector<std::string> parts;
    const auto receive = [&](std::string_view lines) { parts.emplace_back(lines); };
    WholeLines wholeLines;
    for (const std::string& piece : pieces) {
        wholeLines.append(piece, receive);
    }
    wholeLines.finish(receive);
    return parts;
}

TEST(WholeLines, KeepsTheLinesOfOnePieceTogether) {
    EXPECT_THAT(partsOf({"one\ntwo\n", "three\n"}), ElementsAre("one\ntwo\n", "three\n"));
}

TEST(WholeLines, JoinsALineThatArrivesInSeveralPieces) {
    EXPECT_THAT(partsOf({"o", "n", "e\n"}), ElementsAre("one\n"));
    EXPECT_THAT(partsOf({"one\ntw", "o\nthree\nfo", "ur\n"}),
                ElementsAre("one\n", "two\n", "three\n", "four\n"));
    EXPECT_THAT(partsOf({"one", "\ntwo"}), ElementsAre("one\n", "two"));
}

TEST(WholeLines, HandsOnALastLineWithoutALineFeed) {
    EXPECT_THAT(partsOf({"one\ntwo"}), ElementsAre("one\n", "two"));
    EXPECT_THAT(partsOf({"one", ""}), ElementsAre("one"));
}

TEST(WholeLines, HandsOnNothingWhenNothingArrives) {
    EXPECT_THAT(partsOf({}), IsEmpty());
    EXPECT_THAT(partsOf({"", ""}), IsEmpty());
}

// Wherever a text is cut, the same bytes arrive, and no part ends inside a line.
TEST(WholeLines, LosesNothingWhereverThePiecesAreCut) {
    const std::string text = "\n\ngrüße\n🎉\n\nlast 🎉";
    for (std::size_t first = 0; first <= text.size(); ++first) {
        for (std::size_t second = first; second <= text.size(); ++second) {
            const auto parts = partsOf(
                {text.substr(0, first), text.substr(first, second - first), text.substr(second)});
            std::string joined;
            for (std::size_t i = 0; i < parts.size(); ++i) {
                joined += parts[i];
                EXPECT_TRUE(parts[i].ends_with('\n') || i + 1 == parts.size());
            }
            EXPECT_EQ(joined, text);
        }
    }
}

} // namespace
} // namespace platform
