#pragma once

#include <cstddef>
#include <ctime>

// What a Mac's own sources use of its system and this one lacks. The headers beside this one, named
// as the system's, add it to what this system has; the functions are the tests' to define.

/// A file's status, of which the dates have other names there.
struct darwin_stat { // NOLINT(readability-identifier-naming) it takes that name's place
    timespec st_mtimespec;
    timespec st_birthtimespec;
};

int lstat(const char* path, darwin_stat* status);

int sysctlbyname(const char* name, void* value, std::size_t* size, void* newValue,
                 std::size_t newSize);

int pthread_main_np();
