#pragma once

// This system's header, and what FolderIdentity.macos.cpp takes from the Mac's beyond it. The test
// says what is mounted where.

#include_next <sys/mount.h>

struct statfs {
    char f_mntonname[1024];
};

int fstatfs(int descriptor, struct statfs* status);
int statfs(const char* path, struct statfs* status);
