// Disables the product's input sources. The system lets a program do that only on its main thread,
// and forgets nothing of it when the program ends.

#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/InputSources.hpp"
#include "platform/services/ProcessStart.hpp"

#include <cstdio>
#include <cstring>

extern "C" char** environ;

namespace {

constexpr const char* productWord = "kovra";
constexpr int usageError = 2;

int disableAll() {
    const int count = platform::disableInputSourcesContaining(productWord);
    std::printf("Disabled %d input %s.\n", count, count == 1 ? "source" : "sources");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || std::strcmp(argv[1], "--disable-all") != 0) {
        std::fputs("usage: tistool --disable-all\n", stderr);
        return usageError;
    }
    platform::initializeProcess(argv, environ);
    const platform::objc::AutoreleasePool pool;
    return disableAll();
}
