#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace mac {

/// The program's thread-local variables, as <mach-o/loader.h> describes S_THREAD_LOCAL_VARIABLES:
/// each has a descriptor, whose function gives the variable's address on the calling thread.
struct ThreadLocals {
    struct Variable {
        const void* function;
        std::uint64_t key;
        std::uint64_t offset;
    };

    std::span<Variable> variables;
    /// What a new thread's variables hold at first, and how much of it there is.
    const std::uint8_t* initial = nullptr;
    std::size_t size = 0;
};

/// Fills in the descriptors. Before the program runs, once.
void useThreadLocals(const ThreadLocals& locals);

} // namespace mac
