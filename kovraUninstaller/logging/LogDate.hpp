#pragma once

#include <array>
#include <ctime>
#include <string_view>

namespace kovra {

/// A moment as "yyyy-MM-dd HH:mm:ss" in the Mac's local time. Takes no memory beyond itself. Any
/// thread.
class LogDate {
  public:
    explicit LogDate(std::time_t moment);

    [[nodiscard]] std::string_view text() const { return {characters.data(), length}; }

  private:
    std::array<char, 64> characters{};
    std::size_t length;
};

} // namespace kovra
