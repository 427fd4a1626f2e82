#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Cuts a text that arrives in pieces into parts of whole lines. Holds no more than the line that
/// is not complete yet; all else is handed on as a view of the piece. One thread at a time.
class WholeLines {
  public:
    /// Calls `receive` with the lines that the piece completes: up to two views, of one line or
    /// more with their line feeds, in order. A view is valid during the call alone.
    template <class Receive>
    void append(std::string_view piece, const Receive& receive) {
        const std::size_t last = piece.rfind('\n');
        if (last == std::string_view::npos) {
            begun_.append(piece);
            return;
        }
        const std::string_view rest = piece.substr(last + 1);
        piece.remove_suffix(rest.size());
        if (!begun_.empty()) {
            const std::size_t first = piece.find('\n');
            begun_.append(piece.substr(0, first + 1));
            receive(std::string_view(begun_));
            piece.remove_prefix(first + 1);
        }
        if (!piece.empty()) {
            receive(piece);
        }
        begun_.assign(rest);
    }

    /// Hands on the last line when no line feed ended it. Once, after the last piece.
    template <class Receive>
    void finish(const Receive& receive) {
        if (!begun_.empty()) {
            receive(std::string_view(begun_));
            begun_.clear();
        }
    }

  private:
    std::string begun_;
};

} // namespace platform
