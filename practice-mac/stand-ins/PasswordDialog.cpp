#include "practice-mac/stand-ins/PasswordDialog.hpp"

#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <vector>

// POSIX leaves the declaration to the program.
extern "C" char** environ;

namespace practice {

bool personGivesPassword() {
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
