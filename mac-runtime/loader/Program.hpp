#pragma once

#include "loader/Image.hpp"

namespace mac {

/// The program that runs. Set once, before anything of it does.
[[nodiscard]] const Image& program();

/// Maps, binds and prepares the program in that file.
void loadProgram(const std::string& path);

/// Calls its initialisers and its main, on the first thread, and ends with what main gives.
[[noreturn]] void runProgram(int count, char** arguments);

/// What its main is called with.
struct ProgramArguments {
    int count = 0;
    char** words = nullptr;
};

[[nodiscard]] ProgramArguments& programArguments();

} // namespace mac
