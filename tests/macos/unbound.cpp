#include <cstdio>
#include <sys/mount.h>

// Imports a name of libSystem that is in no list of the Mac runtime, so it must fail to start.
int main() {
    std::puts("it runs");
    struct statfs* mounts = nullptr;
    return getmntinfo(&mounts, 0);
}
