#include "unwind/DwarfFrames.hpp"

#include <cstring>

// From libgcc. It expects an entry of length zero at the table's end.
extern "C" void __register_frame(void* table);

namespace mac {

void DwarfFrames::beginCommon() {
    start_ = table_.size();
    word(0, 4); // the length, filled in by end()
    word(0, 4); // marks a CIE
}

void DwarfFrames::beginDescription(Offset common) {
    start_ = table_.size();
    word(0, 4);
    word(table_.size() - common, 4); // distance back to the CIE
}

void DwarfFrames::end() {
    while ((table_.size() - start_ - 4) % 8 != 0) {
        byte(0); // DW_CFA_nop
    }
    const auto length = static_cast<std::uint32_t>(table_.size() - start_ - 4);
    std::memcpy(table_.data() + start_, &length, sizeof length);
}

void DwarfFrames::byte(unsigned value) {
    table_.push_back(static_cast<std::uint8_t>(value));
}

void DwarfFrames::bytes(const std::uint8_t* begin, const std::uint8_t* end) {
    table_.insert(table_.end(), begin, end);
}

void DwarfFrames::word(std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) {
        byte(value >> 8 * i & 0xff);
    }
}

void DwarfFrames::uleb(std::uint64_t value) {
    do {
        byte((value & 0x7f) | (value > 0x7f ? 0x80 : 0));
    } while ((value >>= 7) != 0);
}

void DwarfFrames::augmentationText(bool personality) {
    const char* text = personality ? "zPLR" : "zR";
    bytes(reinterpret_cast<const std::uint8_t*>(text),
          reinterpret_cast<const std::uint8_t*>(text) + std::strlen(text) + 1);
}

void DwarfFrames::augmentationData(std::uintptr_t personality) {
    constexpr unsigned absolutePointer = 0; // DW_EH_PE_absptr
    if (personality == 0) {
        uleb(1);
        byte(absolutePointer);
        return;
    }
    uleb(1 + 8 + 1 + 1);
    byte(absolutePointer);
    word(personality, 8);
    byte(absolutePointer); // of the LSDA
    byte(absolutePointer); // of code
}

void DwarfFrames::registerForEver() {
    word(0, 4);
    auto* kept = new std::vector<std::uint8_t>(std::move(table_));
    __register_frame(kept->data());
}

} // namespace mac
