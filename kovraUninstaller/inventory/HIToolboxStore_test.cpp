#include "kovraUninstaller/inventory/HIToolboxStore.hpp"
#include "platform/services/PropertyListSerialization.hpp"
#include "platform/testing/PrivateMounts.hpp"
#include "platform/testing/SamplePropertyList.hpp"

#include <gtest/gtest.h>

namespace kovra {
namespace {

using platform::PropertyListValue;
using platform::testing::contentOf;
using Dictionary = HIToolboxStore::Dictionary;

// A stand-in of `defaults` for each test, in an overlay of /usr/bin that only this process sees.
class HIToolboxStoreTest : public ::testing::Test {
  protected:
    void SetUp() override { platform::testing::PrivateMounts::overlay("/usr/bin"); }

    // A script that sees the folder below as "$D".
    void makeTool(const std::string& script) const {
        const std::string tool = "/usr/bin/defaults";
        std::filesystem::remove(tool);
        std::ofstream(tool) << "#!/bin/sh\nD='" << folder.path() << "'\n" << script << "\n";
        std::filesystem::permissions(tool, std::filesystem::perms{0755});
    }

    // A tool that keeps the domain in a file and records its arguments.
    void makeWorkingTool() const {
        makeTool("printf '%s\\n' \"$#\" \"$@\" >>\"$D/asked\"\n"
                 "case $1 in export) cat \"$D/domain\";; import) cat >\"$D/domain\";; esac");
    }

    void makeToolThatPrints(const std::string& bytes, const std::string& then = "exit 0") const {
        folder.file("printed", bytes);
        makeTool("cat \"$D/printed\"; " + then);
    }

    static std::string xml(const PropertyListValue& value) {
        return platform::serializeXmlPropertyList(value).value();
    }

    platform::testing::TemporaryFolder folder;
    const Dictionary sample =
        *platform::testing::samplePropertyList().as<PropertyListValue::Dictionary>();
};

TEST_F(HIToolboxStoreTest, ReadsWhatItWroteWhole) {
    makeWorkingTool();
    EXPECT_TRUE(HIToolboxStore::write(sample));
    EXPECT_EQ(HIToolboxStore::read(), sample);
    EXPECT_EQ(contentOf(folder.path("asked")), "3\nimport\ncom.apple.HIToolbox\n-\n"
                                               "3\nexport\ncom.apple.HIToolbox\n-\n");
}

TEST_F(HIToolboxStoreTest, AnEmptyDictionaryEmptiesTheDomain) {
    makeWorkingTool();
    EXPECT_TRUE(HIToolboxStore::write({}));
    EXPECT_EQ(HIToolboxStore::read(), Dictionary());
}

TEST_F(HIToolboxStoreTest, ReadsAnEntryWithANegativeLayoutAndOneWithoutABundle) {
    makeToolThatPrints(
        xml(Dictionary{{"AppleEnabledInputSources",
                        PropertyListValue::Array{Dictionary{{"KeyboardLayout ID", -30768},
                                                            {"KeyboardLayout Name", "U.S."}}}}}));
    const auto settings = HIToolboxStore::read();
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->size(), 1U);
}

TEST_F(HIToolboxStoreTest, ReadsNothingWhenTheToolPrintsNothing) {
    makeTool("exit 0");
    EXPECT_EQ(HIToolboxStore::read(), std::nullopt);
}

TEST_F(HIToolboxStoreTest, ReadsNothingWhenTheToolFailsThoughItPrintedTheSettings) {
    makeToolThatPrints(xml(sample), "exit 1");
    EXPECT_EQ(HIToolboxStore::read(), std::nullopt);
    makeToolThatPrints(xml(sample), "kill -TERM $$");
    EXPECT_EQ(HIToolboxStore::read(), std::nullopt);
    makeToolThatPrints(xml(sample));
    EXPECT_EQ(HIToolboxStore::read(), sample);
}

TEST_F(HIToolboxStoreTest, ReadsNothingWhenAWarningGotIntoTheList) {
    folder.file("printed", xml(sample));
    makeTool("echo '2025-03-14 defaults[1:2] a warning' >&2; cat \"$D/printed\"");
    EXPECT_EQ(HIToolboxStore::read(), std::nullopt);
    makeTool("cat \"$D/printed\"; echo 'a warning' >&2");
    EXPECT_EQ(HIToolboxStore::read(), std::nullopt);
}

TEST_F(HIToolboxStoreTest, ReadsNothingFromWhatIsNoDictionary) {
    for (const std::string& bytes :
         {xml(PropertyListValue::Array{sample}), xml("text"), std::string("plain text"),
          std::string("\xFF\xFE"), xml(sample).substr(0, 300)}) {
        makeToolThatPrints(bytes);
        EXPECT_EQ(HIToolboxStore::read(), std::nullopt);
    }
}

TEST_F(HIToolboxStoreTest, IsOutOfReachWithoutTheTool) {
    std::filesystem::remove("/usr/bin/defaults");
    EXPECT_EQ(HIToolboxStore::read(), std::nullopt);
    EXPECT_FALSE(HIToolboxStore::write(sample));
}

TEST_F(HIToolboxStoreTest, RunsNothingForAValueThatNoListCanHold) {
    makeWorkingTool();
    EXPECT_FALSE(HIToolboxStore::write(Dictionary{{"k", PropertyListValue()}}));
    EXPECT_FALSE(HIToolboxStore::write(Dictionary{{"k", PropertyListValue::Array{"\xFF"}}}));
    EXPECT_FALSE(platform::testing::isThere(folder.path("asked")));
}

TEST_F(HIToolboxStoreTest, AWriteSucceedsExactlyWhenTheToolDoes) {
    makeTool("cat >/dev/null; exit 1");
    EXPECT_FALSE(HIToolboxStore::write(sample));
    makeTool("echo complaints >&2; exit 0");
    EXPECT_TRUE(HIToolboxStore::write(sample));
    makeTool("kill -KILL $$");
    EXPECT_FALSE(HIToolboxStore::write(sample));
}

TEST_F(HIToolboxStoreTest, ADomainOfManyMegabytesGoesThere) {
    makeWorkingTool();
    const Dictionary large{{"k", std::string(20'000'000, 'x')}};
    EXPECT_TRUE(HIToolboxStore::write(large));
    EXPECT_TRUE(HIToolboxStore::read() == large);
}

} // namespace
} // namespace kovra
