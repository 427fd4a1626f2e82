#pragma once

#include "loader/MachO.hpp"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace mac {

/// A Mach-O executable mapped into this process. Its segments keep their distances; all of them are
/// moved by one slide, which changes from run to run.
class Image {
  public:
    /// Maps the file, writable throughout; fails if it is not an arm64 executable.
    static Image map(const std::string& path);

    /// Gives each segment the protection that the file asks for. To be called once the fixups are
    /// applied.
    void protect() const;

    /// Calls `visit` with each section and its address in memory.
    void
    forEachSection(const std::function<void(const macho::Section&, std::uint8_t*)>& visit) const;

    [[nodiscard]] bool contains(std::uintptr_t address) const {
        return address >= base && address < limit;
    }

    std::string path;
    /// The file's name, as backtraces show it.
    std::string name;
    std::uintptr_t base = 0;
    std::uintptr_t limit = 0;
    /// The slide: added to an address of the file, it gives the address in memory.
    std::uintptr_t slide = 0;
    /// Offset of main from the base.
    std::uint64_t entryOffset = 0;
    /// The libraries that the file links, in order; imports count them from 1.
    std::vector<std::string> libraries;
    /// The chained fixups in memory.
    const std::uint8_t* fixups = nullptr;

  private:
    std::vector<macho::Segment> segments_;
    std::vector<std::vector<macho::Section>> sections_;

    void readCommands(const std::uint8_t* file, std::size_t size);
    void chooseSlide();
    void mapSegments(int descriptor);
};

} // namespace mac
