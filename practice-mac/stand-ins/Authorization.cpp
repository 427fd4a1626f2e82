#include "practice-mac/stand-ins/Authorization.hpp"

#include "practice-mac/stand-ins/Config.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <vector>

// POSIX leaves the declaration to the program.
extern "C" char** environ;

namespace practice {

namespace {

constexpr int userCancelled = -128;

// The dialog is the system's: the environment of the program that asks need not name the display.
void findDisplay() {
    for (const Member& variable : members(itemAt(toolsConfig().get(), "display"))) {
        setenv(variable.key.c_str(), text(variable.value).value_or("").c_str(), 1);
    }
}

/// Shows the system's password dialog in the middle of the screen and waits. True for OK, whatever
/// was typed; false for Cancel. Throws std::runtime_error when no dialog can be shown.
bool personGivesPassword() {
    findDisplay();
    std::vector<std::string> words{"/usr/bin/zenity",
                                   "--entry",
                                   "--hide-text",
                                   "--title=kovraUninstaller",
                                   "--text=kovraUninstaller wants to make changes.\n\n"
                                   "Enter your password to allow this.",
                                   "--ok-label=OK",
                                   "--cancel-label=Cancel",
                                   "--width=320"};
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    // What was typed is dropped: it is no password.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", 1, 0);
    pid_t child = 0;
    const int error = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (error != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) > 1) {
        throw std::runtime_error("the password dialog cannot be shown");
    }
    return WEXITSTATUS(status) == 0;
}

} // namespace

std::optional<Refusal> askForPassword() {
    const std::vector<plist_t> answers = elements(itemAt(toolsConfig().get(), "answers"));
    if (answers.empty()) {
        throw std::runtime_error("the scenario has no answer to the password prompt");
    }
    const auto asked = static_cast<size_t>(countedBefore("authorization"));
    plist_t answer = answers[std::min(asked, answers.size() - 1)];
    const std::string kind = textAt(answer, "kind");
    std::this_thread::sleep_for(std::chrono::duration<double>(realAt(answer, "seconds")));
    if (kind == "grant") {
        return std::nullopt;
    }
    if (kind == "cancel" || (kind == "person" && !personGivesPassword())) {
        return Refusal{"User canceled.", userCancelled};
    }
    if (kind == "person") {
        return std::nullopt;
    }
    if (kind == "error") {
        return Refusal{textAt(answer, "message"), static_cast<int>(integerAt(answer, "number"))};
    }
    throw std::runtime_error("unknown answer to the password prompt: " + kind);
}

} // namespace practice
