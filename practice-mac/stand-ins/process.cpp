#include <unistd.h>

/// Waits until a signal ends it, under whatever name it was started.
int main() {
    for (;;) {
        pause();
    }
}
