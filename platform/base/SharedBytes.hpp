#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

/// Immutable bytes that all copies share. A view of them is valid while any copy lives. A value
/// type: any thread.
class SharedBytes {
  public:
    /// None.
    SharedBytes() = default;

    explicit SharedBytes(std::string bytes)
        : bytes_(std::make_shared<const std::string>(std::move(bytes))) {}

    [[nodiscard]] std::string_view view() const {
        return bytes_ ? std::string_view(*bytes_) : std::string_view();
    }

    operator std::string_view() const { return view(); }

    [[nodiscard]] bool empty() const { return view().empty(); }

  private:
    std::shared_ptr<const std::string> bytes_;
};

inline bool operator==(const SharedBytes& bytes, std::string_view others) {
    return bytes.view() == others;
}

} // namespace platform
