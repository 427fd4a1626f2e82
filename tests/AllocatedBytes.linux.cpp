#include "tests/AllocatedBytes.hpp"

#include <malloc.h>

// A sanitizer's own count; the C library's knows nothing of its memory.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

std::size_t allocatedBytes() {
    return __sanitizer_get_current_allocated_bytes != nullptr
               ? __sanitizer_get_current_allocated_bytes()
               : ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
}
