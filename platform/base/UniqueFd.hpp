#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace platform {

/// Calls `call` again for as long as a signal interrupts it; gives its last result.
template <class Call>
auto retryInterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Owns one file descriptor and closes it once. Not copied, only handed on.
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
