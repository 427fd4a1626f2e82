#include "kovraUninstaller/flow/testing/FlowFixture.hpp"

namespace kovra {
namespace {

using testing::Flow;

// What happens, in its order: a line for what people see before each change, and one for each call
// and each line of the log. Rows are told by the first letters of their states.
class Order : public Flow {
  protected:
    std::string eventsOfRun() {
        const std::size_t before = events.lines().size();
        runToTheEnd();
        std::string own = "\n";
        const std::vector<std::string> all = events.lines();
        for (std::size_t i = before; i < all.size(); ++i) {
            own += all[i] + "\n";
        }
        return own;
    }
};

TEST_F(Order, OfASuccess) {
    script.removeData = {"Could not remove x."};
    script.verify = {"A (a)"};
    createService();
    EXPECT_EQ(eventsOfRun(), R"(
ready ppppppp
ready ppppppp
uninstalling ppppppp logs Uninstall started
uninstalling ppppppp
stopProcesses
uninstalling rpppppp
uninstalling dpppppp
removeInputSourceState
uninstalling drppppp
uninstalling ddppppp
removeApps()
uninstalling ddrpppp
uninstalling dddpppp
removeData
uninstalling dddrppp
uninstalling dddwppp
resetPermissions
uninstalling dddwrpp
uninstalling dddwdpp
refreshSystemUI
uninstalling dddwdrp
uninstalling dddwddp
verify
uninstalling dddwddr
uninstalling dddwddd
done dddwddd logs Uninstall finished (residues: 1)
)");
}

TEST_F(Order, OfAFailure) {
    script.duringRemoveApps = [] { throw EngineError::adminCancelled(); };
    createService();
    EXPECT_EQ(eventsOfRun(), R"(
ready ppppppp
ready ppppppp
uninstalling ppppppp logs Uninstall started
uninstalling ppppppp
stopProcesses
uninstalling rpppppp
uninstalling dpppppp
removeInputSourceState
uninstalling drppppp
uninstalling ddppppp
removeApps()
uninstalling ddrpppp
uninstalling ddfpppp
failed ddfpppp logs Uninstall failed at Remove kovra apps: Administrator access was not granted.
)");
}

TEST_F(Order, OfARetry) {
    script.duringRemoveApps = [] { throw EngineError::adminCancelled(); };
    createService();
    runToTheEnd();
    EXPECT_TRUE(eventsOfRun().starts_with(R"(
failed ddfpppp
failed ppppppp
uninstalling ppppppp logs Uninstall started
uninstalling ppppppp
stopProcesses
)"));
}

} // namespace
} // namespace kovra
