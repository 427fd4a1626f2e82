#include "kovraUninstaller/engine/PrivilegedRunner.hpp"

#include "platform/testing/PrivateMounts.hpp"

#include <gtest/gtest.h>

#include <array>
#include <future>

namespace kovra {
namespace {

using platform::testing::contentOf;

// `osascript` as each test needs it, in a view of /usr/bin that only this process has.
class PrivilegedRunnerTest : public ::testing::Test {
  protected:
    void SetUp() override { platform::testing::PrivateMounts::overlay("/usr/bin"); }

    // A script that sees the folder below as "$D".
    void makeTool(const std::string& script) const {
        const std::string tool = "/usr/bin/osascript";
        std::filesystem::remove(tool);
        std::ofstream(tool) << "#!/bin/sh\nD='" << folder.path() << "'\n" << script << "\n";
        std::filesystem::permissions(tool, std::filesystem::perms{0755});
    }

    static platform::Task<void> runAndTell(std::string scriptPath, std::promise<void>& ended) {
        try {
            co_await PrivilegedRunner::runScriptAsAdmin(std::move(scriptPath));
            ended.set_value();
        } catch (...) {
            ended.set_exception(std::current_exception());
        }
    }

    platform::testing::TemporaryFolder folder;
};

TEST_F(PrivilegedRunnerTest, NeverRunsTwoAtATime) {
    makeTool("echo begins >>\"$D/told\"; sleep 0.3; echo ends >>\"$D/told\"");
    std::array<std::promise<void>, 3> runs;
    for (std::promise<void>& run : runs) {
        platform::start(runAndTell("/uninstall.sh", run));
    }
    for (std::promise<void>& run : runs) {
        run.get_future().get();
    }
    EXPECT_EQ(contentOf(folder.path("told")), "begins\nends\nbegins\nends\nbegins\nends\n");
}

TEST_F(PrivilegedRunnerTest, GoesOnAfterARunThatFailed) {
    makeTool("echo \"$2\" >>\"$D/asked\"; echo '0:1: execution error: busy (1)' >&2; exit 1");
    for (const char* path : {"/first.sh", "/second.sh"}) {
        std::promise<void> run;
        platform::start(runAndTell(path, run));
        try {
            run.get_future().get();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const EngineError& error) {
            EXPECT_STREQ(error.what(), "Privileged removal failed: busy");
        }
    }
    EXPECT_EQ(contentOf(folder.path("asked")),
              "do shell script \"/bin/bash '/first.sh'\" with administrator privileges\n"
              "do shell script \"/bin/bash '/second.sh'\" with administrator privileges\n");
}

} // namespace
} // namespace kovra
