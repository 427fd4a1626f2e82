// A whole uninstall without a window: creates the service, presses "Uninstall" when the scan has
// ended, serves the main queue until the run has, and prints how each step and the run went.
//
//   --retry         presses "Retry" once after a failure
//   --quit-at STEP  quits, as the application does, when that step begins
//   --twice         presses "Uninstall" a second time while the run is on
//   --runs N        uninstalls N times, and prints before the first and after each run the
//   process's
//                   open files, children, threads and memory
//   --between LINE  a shell command line that restores the Mac between two runs
//   --heartbeat     prints at the end the longest wait for the main queue

#include "kovraUninstaller/flow/UninstallService.hpp"
#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/Async.hpp"
#include "platform/services/ProcessStart.hpp"
#include "tests/AllocatedBytes.hpp"
#include "tests/MainThreadWait.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using kovra::UninstallService;
namespace phase = kovra::phase;

struct Options {
    bool retry = false;
    bool twice = false;
    int runs = 1;
    bool counts = false;
    const char* between = "true";
    std::string_view quitAt;
};

std::string textOf(const kovra::StepState& state) {
    using Kind = kovra::StepState::Kind;
    switch (state.kind()) {
    case Kind::pending: return "pending";
    case Kind::running: return "running";
    case Kind::done: return "done";
    case Kind::warning: return "warning: " + state.text();
    case Kind::failed: return "failed: " + state.text();
    }
    return {};
}

std::string textOf(const UninstallService::Phase& now) {
    if (const auto* done = std::get_if<phase::Done>(&now)) {
        std::string text = "done";
        for (const std::string& residue : done->residues) {
            text += "\nresidue: " + residue;
        }
        return text;
    }
    if (const auto* failed = std::get_if<phase::Failed>(&now)) {
        return "failed: " + failed->stepTitle + ": " + failed->message;
    }
    constexpr const char* names[] = {"scanning", "nothing found", "ready", "uninstalling"};
    return names[now.index()];
}

// The targets of the open descriptors, without the numbers that differ between pipes.
std::vector<std::string> openFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string name = std::filesystem::read_symlink(entry.path(), gone).string();
        // Without the descriptor of this listing itself.
        if (!gone && name != "/proc/" + std::to_string(::getpid()) + "/fd") {
            names.push_back(name.substr(0, name.find(":[")));
        }
    }
    return names;
}

std::vector<std::string> children() {
    std::vector<std::string> numbers;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream list(thread.path() / "children");
        numbers.insert(numbers.end(), std::istream_iterator<std::string>(list), {});
    }
    return numbers;
}

std::vector<std::string> threads() {
    std::vector<std::string> names;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        if (std::getline(std::ifstream(thread.path() / "comm"), name)) {
            names.push_back(name);
        }
    }
    return names;
}

// A background thread reports that its work is done before it ends. Such threads have the main
// thread's name, which they inherit. If more than one has it after ten seconds, they do not end.
std::vector<std::string> threadsAtRest() {
    using namespace std::chrono_literals;
    std::string main;
    std::getline(std::ifstream("/proc/self/comm"), main);
    const auto patience = std::chrono::steady_clock::now() + 10s;
    auto names = threads();
    while (std::ranges::count(names, main) > 1 && std::chrono::steady_clock::now() < patience) {
        std::this_thread::sleep_for(5ms);
        names = threads();
    }
    return names;
}

void tell(const char* what, std::vector<std::string> names) {
    std::ranges::sort(names);
    std::printf("holds %s:", what);
    for (const std::string& name : names) {
        std::printf("\t%s", name.c_str());
    }
    std::printf("\n");
}

void tellWhatIsHeld() {
    // Memory of the threads is freed when they end.
    const auto resting = threadsAtRest();
    const std::size_t bytes = allocatedBytes();
    tell("threads", resting);
    tell("files", openFiles());
    tell("children", children());
    std::printf("holds bytes:\t%zu\n", bytes);
}

class Run {
  public:
    explicit Run(Options options) : options_(options) {
        service_.onWillChange([this] { platform::mainQueue().post([this] { look(); }); });
    }

  private:
    // The state after a change. Several changes may have happened since the notification.
    void look() {
        if (!options_.quitAt.empty() && isRunning(options_.quitAt)) {
            kovra::UninstallerLog::endSession();
            std::exit(EXIT_SUCCESS);
        }
        const std::string now = textOf(service_.phase());
        if (now == shown_) {
            return;
        }
        shown_ = now;
        std::printf("%s\n", now.c_str());
        if (now == "ready" || now == "nothing found") {
            if (options_.counts) {
                tellWhatIsHeld();
            }
            service_.startUninstall();
            if (options_.twice) {
                platform::mainQueue().post([this] { service_.startUninstall(); });
            }
        } else if (now != "uninstalling") {
            runHasEnded(now);
        }
    }

    void runHasEnded(const std::string& now) {
        for (const auto& row : service_.steps()) {
            std::printf("%s: %s\n", std::string(kovra::rawValue(row.id)).c_str(),
                        textOf(row.state).c_str());
        }
        if (now.starts_with("failed") && options_.retry) {
            options_.retry = false;
            // The run ends shortly after it has published its phase.
            platform::mainQueue().post([this] { service_.startUninstall(); });
            return;
        }
        if (options_.counts) {
            tellWhatIsHeld();
        }
        if (--options_.runs > 0) {
            std::fflush(stdout);
            if (std::system(options_.between) != 0) {
                std::exit(EXIT_FAILURE);
            }
            platform::mainQueue().post([this] { service_.startUninstall(); });
            return;
        }
        std::fflush(stdout);
        kovra::UninstallerLog::endSession();
        std::exit(EXIT_SUCCESS);
    }

    [[nodiscard]] bool isRunning(std::string_view step) const {
        return std::ranges::any_of(service_.steps(), [step](const auto& row) {
            return kovra::rawValue(row.id) == step && row.state == kovra::StepState::running();
        });
    }

    Options options_;
    std::string shown_;
    UninstallService service_;
};

// Whether the main queue has answered the last ping, and the longest wait so far. Never destroyed:
// the measuring thread runs until the process exits.
struct Heartbeat {
    std::atomic<bool> isAnswered = false;
    std::atomic<double> longest = 0;
};

Heartbeat& heartbeat() {
    static Heartbeat& only = *new Heartbeat;
    return only;
}

// Pings the main queue twenty times a second. A ping without an answer counts too. Never returns.
[[noreturn]] void measureWaits() {
    using namespace std::chrono_literals;
    auto& [isAnswered, longest] = heartbeat();
    while (true) {
        kovra::testing::MainThreadWait wait("self");
        isAnswered = false;
        platform::mainQueue().post([] { heartbeat().isAnswered = true; });
        while (!isAnswered) {
            wait.sleep();
            longest = std::max(longest.load(), wait.seconds());
        }
        std::this_thread::sleep_for(50ms);
    }
}

void tellLongestWait() {
    std::fprintf(stderr, "longest wait: %.3f s\n", heartbeat().longest.load());
}

} // namespace

int main(int argc, char** argv) {
    platform::beginProgram(argv);
    const platform::objc::AutoreleasePool pool;
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        options.retry |= argument == "--retry";
        options.twice |= argument == "--twice";
        if (argument == "--heartbeat") {
            std::atexit(tellLongestWait);
            std::thread(measureWaits).detach();
        }
        if (argument == "--runs" && i + 1 < argc) {
            options.runs = std::atoi(argv[++i]);
            options.counts = true;
        }
        if (argument == "--between" && i + 1 < argc) {
            options.between = argv[++i];
        }
        if (argument == "--quit-at" && i + 1 < argc) {
            options.quitAt = argv[++i];
        }
    }
    kovra::UninstallerLog::installCrashHandlers();
    kovra::UninstallerLog::fileSessionStart();
    const Run run(options);
    platform::runMainLoop();
}
