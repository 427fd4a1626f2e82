#pragma once

#include <array>
#include <cstddef>
#include <ctime>
#include <string_view>

namespace kovra {

/// The offset of the Mac's local time from UTC, with the changes that are due, read once. The C
/// library takes a lock for each local time that it is asked for; who finds it held by the thread
/// that just crashed would wait for ever.
class LocalZone {
  public:
    /// Reads what holds from a day before the moment to 400 days after it. Any thread, but not in a
    /// signal handler.
    explicit LocalZone(std::time_t moment);

    /// Seconds east of UTC. Before and after what was read, the first and the last offset hold.
    /// Any thread, and inside a signal handler: takes no lock and no memory.
    [[nodiscard]] long offsetAt(std::time_t moment) const;

  private:
    struct Span {
        std::time_t begin;
        long offset;
    };

    void readDay(std::time_t begin, std::time_t end);

    // Real zones change twice a year, or four times where a fast suspends summer time.
    std::array<Span, 16> spans{};
    std::size_t count = 0;
};

/// A moment as "yyyy-MM-dd HH:mm:ss" in the Mac's local time. Takes no memory beyond itself. Any
/// thread.
class LogDate {
  public:
    /// By the C library; not in a signal handler.
    explicit LogDate(std::time_t moment);

    /// By a zone that was read before; inside a signal handler too.
    LogDate(std::time_t moment, const LocalZone& zone);

    [[nodiscard]] std::string_view text() const { return {characters.data(), length}; }

  private:
    explicit LogDate(const std::tm& local);
    void append(int number, std::size_t digits, std::string_view after);

    std::array<char, 64> characters{};
    std::size_t length = 0;
};

} // namespace kovra
