#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace practice {

/// Everything that can be read from the descriptor until its end. Throws std::system_error.
std::string readAll(int descriptor);

/// Writes all bytes; gives false when the other side is gone or the write fails.
bool writeAll(int descriptor, std::string_view bytes);

/// The file's contents, or nothing when it cannot be read.
std::optional<std::string> readFile(const std::string& path);

/// Puts the bytes at path in one move, with the mode of the file that was there, else 0600.
/// Throws std::system_error.
void replaceFile(const std::string& path, std::string_view bytes);

/// Adds the bytes to the end of the file in one write; gives false when that fails.
bool appendToFile(const std::string& path, std::string_view bytes);

/// Where a symbolic link leads. Throws std::system_error.
std::string linkTarget(const std::string& path);

/// The home folder: the environment's, else that of this process's account. Throws
/// std::runtime_error when there is neither.
std::string homeFolder();

/// The path of this process's working folder, or nothing when it is gone.
std::optional<std::string> workingFolder();

/// The descriptor that a system call gave. Throws std::system_error, with `what`, when it gave
/// none.
int opened(int descriptor, const char* what);

bool exists(const std::string& path);

} // namespace practice
