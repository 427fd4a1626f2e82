#include "tests/AllocatedBytes.hpp"

#include <malloc/malloc.h>

std::size_t allocatedBytes() {
    return ::mstats().bytes_used;
}
