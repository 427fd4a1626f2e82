#pragma once

#include <cstddef>
#include <ctime>

// Declarations of the Mac's system that its sources use and Linux lacks. The headers beside this
// one have the names of the system's and add them to Linux's; the tests define the functions.

/// A file's status, in which the dates have other names on a Mac.
struct darwin_stat { // NOLINT(readability-identifier-naming) it takes that name's place
    timespec st_mtimespec;
    timespec st_birthtimespec;
};

int lstat(const char* path, darwin_stat* status);

int sysctlbyname(const char* name, void* value, std::size_t* size, void* newValue,
                 std::size_t newSize);

int pthread_main_np();
