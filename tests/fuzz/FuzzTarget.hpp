#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// Called by the fuzzer with each input; defined by each target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

inline std::string_view asText(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

/// Aborts unless the condition holds; the fuzzer then reports the input.
inline void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// Whether this input is also tried at length. One in 1024 is, chosen by its content, so that the
/// fuzzer stays fast and its findings can be reproduced.
inline bool isTriedAtLength(std::string_view input) {
    unsigned sum = 0;
    for (const char byte : input) {
        sum += static_cast<unsigned char>(byte);
    }
    return !input.empty() && sum % 1024 == 0;
}

/// The input, repeated to two megabytes: at that size, quadratic work exceeds the fuzzer's time
/// limit.
inline std::string atLength(std::string_view input) {
    constexpr std::size_t length = 2'000'000;
    std::string text;
    text.reserve(length + input.size());
    while (text.size() < length) {
        text += input;
    }
    return text;
}

/// Draws numbers and texts from an input, for targets that construct something from it. When the
/// input is used up, it returns zeros and empty texts.
class Draws {
  public:
    explicit Draws(std::string_view bytes) : bytes_(bytes) {}

    [[nodiscard]] bool areUsedUp() const { return bytes_.empty(); }

    /// 0 to 255.
    unsigned next() { return static_cast<unsigned char>(text(1).append(1, '\0').front()); }

    /// A number of eight bytes.
    std::uint64_t nextLong() {
        std::uint64_t number = 0;
        for (int i = 0; i < 8; ++i) {
            number = number << 8U | next();
        }
        return number;
    }

    std::string text(std::size_t length) {
        std::string drawn(bytes_.substr(0, length));
        bytes_.remove_prefix(drawn.size());
        return drawn;
    }

  private:
    std::string_view bytes_;
};
