#include "platform/base/Utf8.hpp"
#include "platform/services/propertylist/PropertyListForms.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>
#include <string>

namespace platform::propertylist {

namespace {

using Value = PropertyListValue;

constexpr std::string_view magic = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr unsigned deepestNesting = 512;

struct Malformed : std::runtime_error {
    Malformed() : std::runtime_error("malformed property list") {}
};

void require(bool condition) {
    if (!condition) {
        throw Malformed();
    }
}

void appendUtf8(std::string& text, std::uint32_t c) {
    const auto add = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | c >> 6U);
        add(0x80 | (c & 0x3FU));
    } else if (c < 0x10000) {
        add(0xE0 | c >> 12U);
        add(0x80 | (c >> 6U & 0x3FU));
        add(0x80 | (c & 0x3FU));
    } else {
        add(0xF0 | c >> 18U);
        add(0x80 | (c >> 12U & 0x3FU));
        add(0x80 | (c >> 6U & 0x3FU));
        add(0x80 | (c & 0x3FU));
    }
}

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {
        require(bytes.size() >= magic.size() + trailerSize && isBinary(bytes));
        const std::size_t trailer = bytes.size() - trailerSize;
        offsetSize_ = number(trailer + 6, 1);
        referenceSize_ = number(trailer + 7, 1);
        objectCount_ = number(trailer + 8, 8);
        rootObject_ = number(trailer + 16, 8);
        offsetTable_ = number(trailer + 24, 8);
        require(offsetSize_ >= 1 && offsetSize_ <= 8 && referenceSize_ >= 1 && referenceSize_ <= 8);
        require(offsetTable_ <= trailer && objectCount_ <= (trailer - offsetTable_) / offsetSize_);
        // Many references may share one object. Real lists do not expand to much more than their
        // size; one made to do so would exhaust the memory.
        constexpr std::uint64_t allowance = 256UL * 1024 * 1024;
        budget_ = std::min<std::uint64_t>(64 * bytes.size(), 8 * bytes.size() + allowance);
    }

    Value root() { return object(rootObject_, 0); }

  private:
    // A big-endian unsigned number of up to eight bytes.
    [[nodiscard]] std::uint64_t number(std::size_t at, std::uint64_t size) const {
        require(at <= bytes_.size() && size <= bytes_.size() - at);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value = value << 8U | static_cast<unsigned char>(bytes_[at + i]);
        }
        return value;
    }

    std::string_view span(std::size_t at, std::uint64_t size) {
        require(at <= bytes_.size() && size <= bytes_.size() - at);
        spend(size);
        return bytes_.substr(at, size);
    }

    void spend(std::uint64_t size) {
        require(size < budget_);
        budget_ -= size;
    }

    // The number of elements of an object, and the offset of the first.
    struct Extent {
        std::uint64_t count;
        std::size_t at;
    };

    [[nodiscard]] Extent extent(std::size_t at, unsigned low) const {
        constexpr unsigned countFollows = 15;
        if (low != countFollows) {
            return {low, at + 1};
        }
        const std::uint64_t marker = number(at + 1, 1);
        require(marker >> 4U == 1 && (marker & 15U) <= 3);
        const std::uint64_t size = 1U << (marker & 15U);
        return {number(at + 2, size), at + 2 + size};
    }

    Value object(std::uint64_t index, unsigned depth) {
        require(index < objectCount_ && depth < deepestNesting);
        spend(sizeof(Value));
        const std::size_t at = number(offsetTable_ + index * offsetSize_, offsetSize_);
        const auto marker = static_cast<unsigned>(number(at, 1));
        const unsigned low = marker & 15U;
        switch (marker >> 4U) {
        case 0x0: return truthValue(low);
        case 0x1: return integer(at + 1, low);
        case 0x2: return real(at + 1, low);
        case 0x3: require(low == 3); return Value::Date{std::bit_cast<double>(number(at + 1, 8))};
        case 0x4: return data(extent(at, low));
        case 0x5: return asciiString(extent(at, low));
        case 0x6: return utf16String(extent(at, low));
        case 0x8: require(low < 8); return Value::Dictionary{{"CF$UID", number(at + 1, low + 1)}};
        case 0xA: return array(extent(at, low), depth);
        case 0xD: return dictionary(extent(at, low), depth);
        default: throw Malformed();
        }
    }

    static Value truthValue(unsigned low) {
        require(low == 8 || low == 9);
        return low == 9;
    }

    // 1, 2 and 4 bytes are unsigned, 8 bytes signed; 16 bytes are for larger unsigned numbers.
    Value integer(std::size_t at, unsigned low) const {
        require(low <= 4);
        if (low == 4) {
            require(number(at, 8) == 0);
            return number(at + 8, 8);
        }
        const std::uint64_t value = number(at, 1U << low);
        return static_cast<std::int64_t>(value);
    }

    Value real(std::size_t at, unsigned low) const {
        require(low == 2 || low == 3);
        return low == 2 ? static_cast<double>(
                              std::bit_cast<float>(static_cast<std::uint32_t>(number(at, 4))))
                        : std::bit_cast<double>(number(at, 8));
    }

    Value data(Extent extent) {
        const std::string_view content = span(extent.at, extent.count);
        Value::Data data(content.size());
        if (!data.empty()) {
            std::memcpy(data.data(), content.data(), content.size());
        }
        return data;
    }

    Value asciiString(Extent extent) {
        const std::string_view text = span(extent.at, extent.count);
        require(isValidUtf8(text));
        return std::string(text);
    }

    Value utf16String(Extent extent) {
        require(extent.count <= bytes_.size());
        const std::string_view units = span(extent.at, 2 * extent.count);
        const auto unit = [&](std::size_t i) -> std::uint32_t {
            return static_cast<unsigned char>(units[2 * i]) << 8U |
                   static_cast<unsigned char>(units[2 * i + 1]);
        };
        std::string text;
        for (std::size_t i = 0; i < extent.count; ++i) {
            std::uint32_t c = unit(i);
            const bool high = c >= 0xD800 && c <= 0xDBFF;
            if (high && i + 1 < extent.count && unit(i + 1) >> 10U == 0x37) {
                c = 0x10000 + ((c - 0xD800) << 10U) + (unit(++i) - 0xDC00);
            } else if (c >> 11U == 0x1B) {
                c = 0xFFFD; // an unpaired surrogate
            }
            appendUtf8(text, c);
        }
        return text;
    }

    std::uint64_t reference(std::size_t at, std::uint64_t index) const {
        return number(at + index * referenceSize_, referenceSize_);
    }

    Value array(Extent extent, unsigned depth) {
        require(extent.count <= bytes_.size());
        Value::Array values;
        for (std::uint64_t i = 0; i < extent.count; ++i) {
            values.push_back(object(reference(extent.at, i), depth + 1));
        }
        return values;
    }

    Value dictionary(Extent extent, unsigned depth) {
        require(extent.count <= bytes_.size());
        Value::Dictionary values;
        for (std::uint64_t i = 0; i < extent.count; ++i) {
            const Value key = object(reference(extent.at, i), depth + 1);
            require(key.as<std::string>() != nullptr);
            values.insert_or_assign(*key.as<std::string>(),
                                    object(reference(extent.at, extent.count + i), depth + 1));
        }
        return values;
    }

    std::string_view bytes_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t rootObject_ = 0;
    std::uint64_t offsetTable_ = 0;
    std::uint64_t budget_ = 0; // bytes that the value may still use
};

} // namespace

bool isBinary(std::string_view bytes) {
    return bytes.starts_with(magic);
}

std::optional<PropertyListValue> readBinary(std::string_view bytes) {
    try {
        return Reader(bytes).root();
    } catch (const Malformed&) {
        return std::nullopt;
    }
}

} // namespace platform::propertylist
