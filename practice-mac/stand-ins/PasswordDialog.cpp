#include "practice-mac/stand-ins/PasswordDialog.hpp"

#include "practice-mac/stand-ins/Config.hpp"

#include <cstdlib>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <vector>

// POSIX leaves the declaration to the program.
extern "C" char** environ;

namespace practice {

namespace {

// The dialog is the system's, which knows the display whether or not the program that asks does.
void findDisplay() {
    for (const Member& variable : members(itemAt(toolsConfig().get(), "display"))) {
        setenv(variable.key.c_str(), text(variable.value).value_or("").c_str(), 1);
    }
}

} // namespace

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
    // What is typed stays here: it is nobody's password.
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

} // namespace practice
