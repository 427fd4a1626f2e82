#pragma once

#include <cerrno>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace platform {

/// Repeats `call` while a signal interrupts it (EINTR); returns its last result.
template <class Call>
auto retryInterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Whether a path or argument has no NUL byte. The output of a tool can have some; the system would
/// read up to the first one and act on another path than was meant. Everything that passes text to
/// the system refuses such text.
[[nodiscard]] inline bool hasNoNul(std::string_view text) {
    return text.find('\0') == std::string_view::npos;
}

/// Owns one file descriptor and closes it. Movable, not copyable.
class UniqueFd {
  public:
    UniqueFd() = default;

    explicit UniqueFd(int descriptor) : descriptor_(descriptor) {}

    UniqueFd(UniqueFd&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.descriptor_, -1));
        }
        return *this;
    }

    ~UniqueFd() { reset(); }

    [[nodiscard]] int get() const { return descriptor_; }

    [[nodiscard]] explicit operator bool() const { return descriptor_ >= 0; }

    [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }

    void reset(int replacement = -1) {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
        descriptor_ = replacement;
    }

  private:
    int descriptor_ = -1;
};

} // namespace platform
