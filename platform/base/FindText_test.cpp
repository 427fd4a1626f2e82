#include "platform/base/FindText.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace platform {
namespace {

using namespace std::string_view_literals;

// Every text of up to seven of three characters, every piece of up to four, every beginning.
TEST(FindText, FindsWhatTheLibraryFinds) {
    const auto words = [](int longest) {
        std::vector<std::string> made{""};
        for (std::size_t at = 0; made[at].size() < static_cast<std::size_t>(longest); ++at) {
            for (const char c : "ab\0"sv) {
                made.push_back(made[at] + c);
            }
        }
        return made;
    };
    const auto pieces = words(4);
    for (const std::string& text : words(7)) {
        for (const std::string& piece : pieces) {
            for (std::size_t from = 0; from <= text.size() + 1; ++from) {
                ASSERT_EQ(findText(text, piece, from), std::string_view(text).find(piece, from));
            }
        }
    }
}

TEST(FindText, LooksNoFurtherThanTheText) {
    const std::string whole = "some kovra";
    EXPECT_EQ(findText(std::string_view(whole).substr(0, 9), "kovra"), std::string_view::npos);
    EXPECT_EQ(findText({}, "kovra"), std::string_view::npos);
    EXPECT_EQ(findText({}, {}), 0U);
    EXPECT_EQ(findText(whole, {}, 4), 4U);
}

} // namespace
} // namespace platform
