#include <unistd.h>

/// A process that stands there under the name it was given, until a signal ends it.
int main() {
    for (;;) {
        pause();
    }
}
