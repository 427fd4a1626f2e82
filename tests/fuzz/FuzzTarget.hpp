#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// What the fuzzer calls with one input after the other; defined by each target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

inline std::string_view asText(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

/// Ends the program, which the fuzzer reports with the input, unless the condition holds.
inline void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}
