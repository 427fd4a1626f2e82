#include "kovraUninstaller/engine/PrivilegedRunner.hpp"

#include "platform/testing/PrivateMounts.hpp"

#include <gtest/gtest.h>

#include <array>
#include <future>

namespace kovra {
namespace {

using platform::testing::contentOf;

// Each test has its own `osascript`, in an overlay of /usr/bin that only this process sees.
class PrivilegedRunnerTest : public ::testing::Test {
  protected:
    void SetUp() override { platform::testing::PrivateMounts::overlay("/usr/bin"); }

    // The script sees the test's folder as "$D".
    void makeTool(const std::string& script) const {
        const std::string tool = "/usr/bin/osascript";
        std::filesystem::remove(tool);
        std::ofstream(tool) << "#!/bin/sh\nD='" << folder.path() << "'\n" << script << "\n";
        std::filesystem::permissions(tool, std::filesystem::perms{0755});
    }

    static platform::Task<void> runAndReport(std::string scriptPath, std::promise<void>& ended) {
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
    makeTool("echo begins >>\"$D/calls\"; sleep 0.3; echo ends >>\"$D/calls\"");
    std::array<std::promise<void>, 3> runs;
    for (std::promise<void>& run : runs) {
        platform::start(runAndReport("/uninstall.sh", run));
    }
    for (std::promise<void>& run : runs) {
        run.get_future().get();
    }
    EXPECT_EQ(contentOf(folder.path("calls")), "begins\nends\nbegins\nends\nbegins\nends\n");
}

TEST_F(PrivilegedRunnerTest, RunsTheNextScriptAfterAFailure) {
    makeTool("echo \"$2\" >>\"$D/sources\"; echo '0:1: execution error: busy (1)' >&2; exit 1");
    for (const char* path : {"/first.sh", "/second.sh"}) {
        std::promise<void> run;
        platform::start(runAndReport(path, run));
        try {
            run.get_future().get();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const EngineError& error) {
            EXPECT_STREQ(error.what(), "Privileged removal failed: busy");
        }
    }
    EXPECT_EQ(contentOf(folder.path("sources")),
              "do shell script \"/bin/bash '/first.sh'\" with administrator privileges\n"
              "do shell script \"/bin/bash '/second.sh'\" with administrator privileges\n");
}

} // namespace
} // namespace kovra
