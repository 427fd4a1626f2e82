// Removes what is called "tree" in the working folder, as `rm -rf tree` does.

#include "platform/base/RemoveTree.hpp"

#include <cstdio>

int main() {
    if (const auto failure = platform::removeTree("tree")) {
        std::fprintf(stderr, "remove_tree: %s\n", failure->reason().c_str());
        return 1;
    }
    return 0;
}
