#pragma once

#include "loader/Image.hpp"

namespace mac {

/// The running program. Set once, before any of its code runs.
[[nodiscard]] const Image& program();

/// Maps the program in that file, binds its imports and registers its thread-locals and unwind
/// tables.
void loadProgram(const std::string& path);

/// Calls its initialisers and its main, on the first thread, and exits with main's result.
[[noreturn]] void runProgram(int count, char** arguments);

/// The arguments of its main.
struct ProgramArguments {
    int count = 0;
    char** words = nullptr;
};

[[nodiscard]] ProgramArguments& programArguments();

} // namespace mac
