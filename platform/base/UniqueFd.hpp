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

    explicit UniqueFd(int descriptor) : descriptor(descriptor) {}

    UniqueFd(UniqueFd&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}

    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.descriptor, -1));
        }
        return *this;
    }

    ~UniqueFd() { reset(); }

    [[nodiscard]] int get() const { return descriptor; }

    [[nodiscard]] explicit operator bool() const { return descriptor >= 0; }

    [[nodiscard]] int release() { return std::exchange(descriptor, -1); }

    void reset(int replacement = -1) {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        descriptor = replacement;
    }

  private:
    int descriptor = -1;
};

} // namespace platform
