#pragma once

#include <cstdint>
#include <vector>

namespace mac {

/// A table in the form of DWARF's `.eh_frame`, being written. Pointers in it are whole addresses.
class DwarfFrames {
  public:
    using Offset = std::size_t;

    /// Begins an entry; what follows until `end` is its content. A description names the common
    /// entry that it goes on from.
    void beginCommon();
    void beginDescription(Offset common);
    void end();

    void byte(unsigned value);
    void bytes(const std::uint8_t* begin, const std::uint8_t* end);
    void word(std::uint64_t value, int size);
    void uleb(std::uint64_t value);

    /// The "z…" text and its data that tell of whole pointers, and of a personality unless it is 0.
    void augmentationText(bool personality);
    void augmentationData(std::uintptr_t personality);

    [[nodiscard]] Offset position() const { return table.size(); }

    [[nodiscard]] Offset entryStart() const { return start; }

    /// Ends the table and gives it to the unwinder, for ever.
    void registerForEver();

  private:
    std::vector<std::uint8_t> table;
    Offset start = 0;
};

} // namespace mac
