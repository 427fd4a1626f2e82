#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace mac {

/// The program's thread-local variables, as <mach-o/loader.h> describes S_THREAD_LOCAL_VARIABLES:
/// each has a descriptor, whose function returns the variable's address on the calling thread.
struct ThreadLocals {
    struct Variable {
        const void* function;
        std::uint64_t key;
        std::uint64_t offset;
    };

    std::span<Variable> variables;
    /// The initial content of each thread's variables, and its size in bytes.
    const std::uint8_t* initial = nullptr;
    std::size_t size = 0;
};

/// Fills in the descriptors. Once, before the program runs.
void useThreadLocals(const ThreadLocals& locals);

} // namespace mac
