#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

/// Bytes that nobody changes, held by all copies together: a copy costs nothing, and what a view of
/// it shows stays for as long as any copy lives. A plain value type: any thread.
class SharedBytes {
  public:
    /// None.
    SharedBytes() = default;

    explicit SharedBytes(std::string bytes)
        : bytes(std::make_shared<const std::string>(std::move(bytes))) {}

    [[nodiscard]] std::string_view view() const {
        return bytes ? std::string_view(*bytes) : std::string_view();
    }

    operator std::string_view() const { return view(); }

    [[nodiscard]] bool empty() const { return view().empty(); }

  private:
    std::shared_ptr<const std::string> bytes;
};

inline bool operator==(const SharedBytes& bytes, std::string_view others) {
    return bytes.view() == others;
}

} // namespace platform
