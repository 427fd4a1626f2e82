#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>

namespace kovra {

/// Text of limited length that needs no memory but its own, so that a signal handler may make one.
/// What goes beyond the capacity is cut off.
template <std::size_t capacity>
class FixedText {
  public:
    void append(std::string_view piece) {
        piece = piece.substr(0, capacity - length_);
        std::ranges::copy(piece, characters_.data() + length_);
        length_ += piece.size();
    }

    [[nodiscard]] std::string_view text() const { return {characters_.data(), length_}; }

  private:
    std::array<char, capacity> characters_{};
    std::size_t length_ = 0;
};

/// The local time's offset from UTC, with the changes that are due, read once. The C library takes
/// a lock for each local time that it is asked for: in a signal handler that would be a deadlock
/// when the thread that crashed holds it.
class LocalZone {
  public:
    /// Reads what holds from a day before the moment to 400 days after it. Any thread, but not in a
    /// signal handler.
    explicit LocalZone(std::time_t moment);

    /// The zone in which this process dates its lines, read by the first call. That is for any
    /// thread; later ones are safe in a signal handler too.
    static const LocalZone& ofProcess();

    /// Seconds east of UTC. Before and after what was read, the first and the last offset hold.
    /// Any thread; safe in a signal handler.
    [[nodiscard]] long offsetAt(std::time_t moment) const;

  private:
    struct Span {
        std::time_t begin;
        long offset;
    };

    void readDay(std::time_t begin, std::time_t end);

    // Real zones change twice a year, or four times where a fast suspends summer time.
    std::array<Span, 16> spans_{};
    std::size_t count_ = 0;
};

/// The C library's offset of local time from UTC at a moment, in seconds east. Any thread, but not
/// in a signal handler.
[[nodiscard]] long localOffset(std::time_t moment);

using LogDate = FixedText<64>;

/// A moment as "yyyy-MM-dd HH:mm:ss" in the local time of that offset. Any thread; safe in a signal
/// handler.
[[nodiscard]] LogDate logDate(std::time_t moment, long offset);

using LogLineStart = FixedText<72>;

/// What each line of the log begins with: the date in brackets and a space. Any thread; safe in a
/// signal handler.
[[nodiscard]] LogLineStart logLineStart(std::time_t moment, const LocalZone& zone);

/// The message as a line of the log that is written now: with its start, and a line feed at its
/// end. Any thread, but not in a signal handler.
[[nodiscard]] std::string logLine(std::string_view message);

} // namespace kovra
