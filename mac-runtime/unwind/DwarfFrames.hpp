#pragma once

#include <cstdint>
#include <vector>

namespace mac {

/// Writes a table in the format of DWARF's `.eh_frame`, with absolute pointers.
class DwarfFrames {
  public:
    using Offset = std::size_t;

    /// Begins an entry, a CIE or an FDE of that CIE; what is written until `end` is its content.
    void beginCommon();
    void beginDescription(Offset common);
    void end();

    void byte(unsigned value);
    void bytes(const std::uint8_t* begin, const std::uint8_t* end);
    void word(std::uint64_t value, int size);
    void uleb(std::uint64_t value);

    /// The augmentation string and data, which declare absolute pointers, and the personality
    /// unless it is 0.
    void augmentationText(bool personality);
    void augmentationData(std::uintptr_t personality);

    [[nodiscard]] Offset position() const { return table_.size(); }

    [[nodiscard]] Offset entryStart() const { return start_; }

    /// Ends the table and registers it with the unwinder, for the life of the process.
    void registerForEver();

  private:
    std::vector<std::uint8_t> table_;
    Offset start_ = 0;
};

} // namespace mac
