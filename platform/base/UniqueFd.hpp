#pragma once

#include <cerrno>
#include <string_view>
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

/// Whether the system takes the whole of a path or argument: it reads up to the first NUL byte,
/// which the output of a tool can hold, and would act on something else than was meant. Whatever
/// hands text to the system refuses it otherwise.
[[nodiscard]] inline bool hasNoNul(std::string_view text) {
    return text.find('\0') == std::string_view::npos;
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
