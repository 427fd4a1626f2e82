#include "loader/Failure.hpp"
#include "unwind/TableReaders.hpp"
#include "unwind/Unwind.hpp"

#include <cstring>
#include <vector>

namespace mac {

namespace {

// <mach-o/compact_unwind_encoding.h>
struct Header {
    std::uint32_t version, encodingsOffset, encodingCount, personalitiesOffset, personalityCount,
        indexOffset, indexCount;
};

struct IndexEntry {
    std::uint32_t firstFunction, pageOffset, languageDataOffset;
};

struct LanguageData {
    std::uint32_t function, offset;
};

struct Page {
    std::uint32_t kind;
    std::uint16_t entriesOffset, entryCount, encodingsOffset, encodingCount;
};

constexpr std::uint32_t regularPage = 2;

struct Function {
    std::uint32_t begin, encoding;
};

constexpr std::uint32_t modeMask = 0x0f000000;
constexpr std::uint32_t modeFrameless = 0x02000000;
constexpr std::uint32_t modeDwarf = 0x03000000;
constexpr std::uint32_t modeFrame = 0x04000000;
constexpr std::uint32_t hasLanguageData = 0x40000000;

// Pairs of callee-saved registers by their DWARF numbers, in the order in which they are stored
// below the frame pointer.
struct SavedPair {
    std::uint32_t bit;
    unsigned first;
};

constexpr SavedPair savedPairs[] = {{0x1, 19},   {0x2, 21},   {0x4, 23},   {0x8, 25},  {0x10, 27},
                                    {0x100, 72}, {0x200, 74}, {0x400, 76}, {0x800, 78}};

constexpr unsigned framePointer = 29;
constexpr unsigned linkRegister = 30;
constexpr unsigned stackPointer = 31;

class Reader {
  public:
    Reader(const std::uint8_t* table, std::uintptr_t imageBase)
        : table_(table), base_(imageBase), header_(*at<Header>(0)) {
        if (header_.version != 1) {
            fail("__unwind_info has the version %u", header_.version);
        }
    }

    void addTo(DwarfFrames& frames) {
        readFunctions();
        addCommonEntries(frames);
        const std::uint32_t endOfAll = index()[header_.indexCount - 1].firstFunction;
        for (std::size_t i = 0; i < functions_.size(); ++i) {
            const std::uint32_t end =
                i + 1 < functions_.size() ? functions_[i + 1].begin : endOfAll;
            addDescription(functions_[i], end, frames);
        }
    }

  private:
    const std::uint8_t* table_;
    std::uintptr_t base_;
    const Header& header_;
    std::vector<Function> functions_;
    std::vector<DwarfFrames::Offset> common_; // by the personality's index; 0 has none

    template <class T>
    const T* at(std::size_t offset) const {
        return reinterpret_cast<const T*>(table_ + offset);
    }

    [[nodiscard]] const IndexEntry* index() const { return at<IndexEntry>(header_.indexOffset); }

    // The last entry of the index is a sentinel: it holds the end of the last function.
    void readFunctions() {
        for (std::uint32_t i = 0; i + 1 < header_.indexCount; ++i) {
            const IndexEntry& entry = index()[i];
            if (entry.pageOffset == 0) {
                continue;
            }
            const auto& page = *at<Page>(entry.pageOffset);
            const std::size_t entries = entry.pageOffset + page.entriesOffset;
            for (std::size_t j = 0; j < page.entryCount; ++j) {
                if (page.kind == regularPage) {
                    functions_.push_back(at<Function>(entries)[j]);
                } else {
                    const std::uint32_t packed = at<std::uint32_t>(entries)[j];
                    functions_.push_back({entry.firstFunction + (packed & 0xffffff),
                                          encoding(packed >> 24, entry.pageOffset, page)});
                }
            }
        }
    }

    // The table's common encodings are numbered first, then the page's own.
    [[nodiscard]] std::uint32_t encoding(std::uint32_t number, std::size_t pageOffset,
                                         const Page& page) const {
        return number < header_.encodingCount
                   ? at<std::uint32_t>(header_.encodingsOffset)[number]
                   : at<std::uint32_t>(pageOffset +
                                       page.encodingsOffset)[number - header_.encodingCount];
    }

    void addCommonEntries(DwarfFrames& frames) {
        for (std::uint32_t i = 0; i <= header_.personalityCount; ++i) {
            // The table points to a bound pointer of the image, which holds the personality's
            // address.
            const std::uintptr_t personality =
                i == 0 ? 0
                       : wrappedPersonality(*reinterpret_cast<const std::uintptr_t*>(
                             base_ + at<std::uint32_t>(header_.personalitiesOffset)[i - 1]));
            frames.beginCommon();
            common_.push_back(frames.entryStart());
            frames.byte(1); // version
            frames.augmentationText(personality != 0);
            frames.uleb(4);    // code alignment factor
            frames.byte(0x78); // data alignment factor, -8
            frames.byte(linkRegister);
            frames.augmentationData(personality);
            frames.byte(0x0c); // DW_CFA_def_cfa
            frames.uleb(stackPointer);
            frames.uleb(0);
            frames.end();
        }
    }

    [[nodiscard]] std::uintptr_t languageData(std::uint32_t function) const {
        const auto* first = at<LanguageData>(index()[0].languageDataOffset);
        const auto* last = at<LanguageData>(index()[header_.indexCount - 1].languageDataOffset);
        for (const auto* entry = first; entry != last; ++entry) {
            if (entry->function == function) {
                return base_ + entry->offset;
            }
        }
        fail("__unwind_info has no language data for %#x", function);
    }

    void addDescription(const Function& function, std::uint32_t end, DwarfFrames& frames) {
        const std::uint32_t mode = function.encoding & modeMask;
        if (mode == modeDwarf || function.encoding == 0) {
            return; // it is in __eh_frame, or has no unwind information
        }
        if (mode != modeFrame && mode != modeFrameless) {
            fail("__unwind_info has the encoding %#x", function.encoding);
        }
        const std::uint32_t personality = function.encoding >> 28 & 3;
        frames.beginDescription(common_.at(personality));
        frames.word(base_ + function.begin, 8);
        frames.word(end - function.begin, 8);
        frames.uleb(personality == 0 ? 0 : 8);
        if (personality != 0) {
            const bool hasData = (function.encoding & hasLanguageData) != 0;
            frames.word(hasData ? languageData(function.begin) : 0, 8);
        }
        addSavedRegisters(function.encoding, frames);
        frames.end();
    }

    static void addSavedRegisters(std::uint32_t encoding, DwarfFrames& frames) {
        unsigned place = 1; // in words below the CFA
        if ((encoding & modeMask) == modeFrame) {
            frames.byte(0x0c); // DW_CFA_def_cfa
            frames.uleb(framePointer);
            frames.uleb(16);
            addSaved(linkRegister, place++, frames);
            addSaved(framePointer, place++, frames);
        } else {
            frames.byte(0x0e); // DW_CFA_def_cfa_offset
            frames.uleb(16 * (encoding >> 12 & 0xfff));
        }
        for (const auto& [bit, first] : savedPairs) {
            if ((encoding & bit) != 0) {
                addSaved(first, place++, frames);
                addSaved(first + 1, place++, frames);
            }
        }
    }

    static void addSaved(unsigned number, unsigned place, DwarfFrames& frames) {
        if (number < 64) {
            frames.byte(0x80 | number); // DW_CFA_offset
        } else {
            frames.byte(0x05); // DW_CFA_offset_extended
            frames.uleb(number);
        }
        frames.uleb(place);
    }
};

} // namespace

void addCompactUnwind(const std::uint8_t* table, std::uintptr_t imageBase, DwarfFrames& frames) {
    Reader(table, imageBase).addTo(frames);
}

void registerUnwindTables(const UnwindTables& tables) {
    DwarfFrames frames;
    if (tables.compact != nullptr) {
        addCompactUnwind(tables.compact, tables.imageBase, frames);
    }
    addEhFrame(tables.frames, frames);
    frames.registerForEver();
}

} // namespace mac
