#pragma once

// Linux's header, and what FolderIdentity.macos.cpp uses of a Mac's beyond that. The test defines
// the functions.

#include_next <sys/mount.h>

struct statfs {
    char f_mntonname[1024];
};

int fstatfs(int descriptor, struct statfs* status);
int statfs(const char* path, struct statfs* status);
