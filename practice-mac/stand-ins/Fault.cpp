#include "practice-mac/stand-ins/Fault.hpp"

#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/Files.hpp"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <stdexcept>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

namespace practice {

namespace {

constexpr size_t rubbishBytes = 4096;

bool fits(plist_t order, const Invocation& call) {
    const std::vector<std::string> wanted = texts(itemAt(order, "arguments"));
    return textAt(order, "tool") == call.name && wanted.size() <= call.arguments.size() &&
           std::equal(wanted.begin(), wanted.end(), call.arguments.begin());
}

void sleepSeconds(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

/// Redirects standard output and standard error to the descriptor, and closes it.
void printTo(int elsewhere) {
    dup2(elsewhere, STDOUT_FILENO);
    dup2(elsewhere, STDERR_FILENO);
    close(elsewhere);
}

/// Redirects to /dev/null. If the descriptors were only closed, the next file opened would reuse
/// their numbers and get the output.
void loseOutput() {
    printTo(opened(open("/dev/null", O_WRONLY | O_CLOEXEC), "/dev/null"));
}

/// The caller's end of the output, kept open until this process ends.
int keptOutput() {
    return opened(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1), "standard output");
}

void printRubbish() {
    std::mt19937 random(20240229);
    std::string bytes(rubbishBytes, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
    writeAll(STDOUT_FILENO, bytes);
}

void printFlood(size_t bytes) {
    std::string block;
    while (block.size() < 65536) {
        block += "path:                       /Library/a line of a flood that never seems to end\n";
    }
    while (bytes > 0 && writeAll(STDOUT_FILENO, std::string_view(block).substr(0, bytes))) {
        bytes -= std::min(bytes, block.size());
    }
}

void leaveGrandchild(double seconds) {
    const pid_t child = fork();
    if (child == 0) {
        sleepSeconds(seconds);
        _exit(0);
    }
}

} // namespace

std::optional<Fault> Fault::ordered(const Invocation& call) {
    int number = 0;
    for (plist_t order : elements(itemAt(toolsConfig().get(), "faults"))) {
        const std::string counter = "fault-" + std::to_string(number++);
        if (!fits(order, call)) {
            continue;
        }
        const int64_t times = integerAt(order, "times");
        // kill-caller applies to one run, whose number, counted from 1, is the value.
        const bool isDue = textAt(order, "kind") == "kill-caller"
                               ? countedBefore(counter) + 1 == realAt(order, "value")
                               : times == 0 || countedBefore(counter) < times;
        if (isDue) {
            Fault fault;
            fault.kind_ = textAt(order, "kind");
            fault.value_ = realAt(order, "value");
            return fault;
        }
    }
    return std::nullopt;
}

bool Fault::ends() const {
    return kind_ == "exit" || kind_ == "signal";
}

Outcome Fault::end() const {
    if (kind_ == "exit") {
        return {.status = static_cast<int>(value_)};
    }
    return {.signal = static_cast<int>(value_)};
}

void Fault::begin() {
    if (kind_ == "slow") {
        sleepSeconds(value_);
    } else if (kind_ == "grandchild") {
        leaveGrandchild(value_);
    } else if (kind_ == "kill-caller") {
        kill(getppid(), SIGKILL);
    } else if (kind_ == "close-output") {
        // The caller sees the end of the output, and the work is still to be done.
        loseOutput();
        sleepSeconds(value_);
    } else if (kind_ == "silent" || kind_ == "rubbish" || kind_ == "flood") {
        output_ = keptOutput();
        if (kind_ == "rubbish") {
            printRubbish();
        } else if (kind_ == "flood") {
            printFlood(static_cast<size_t>(value_));
        }
        loseOutput();
    } else if (kind_ == "cut") {
        output_ = keptOutput();
        printTo(opened(memfd_create("whole output", MFD_CLOEXEC), "memfd"));
    } else if (kind_ != "late-exit") {
        throw std::runtime_error("unknown fault " + kind_);
    }
}

Outcome Fault::finish(Outcome worked) const {
    if (kind_ == "cut") {
        lseek(STDOUT_FILENO, 0, SEEK_SET);
        const std::string whole = readAll(STDOUT_FILENO);
        writeAll(output_, std::string_view(whole).substr(0, whole.size() / 2));
    }
    return kind_ == "late-exit" ? Outcome{.status = static_cast<int>(value_)} : worked;
}

} // namespace practice
