// Makes Foundation objects of any shape side by side with the values that they must be converted
// to, and from.

#include "platform/foundation/Conversions.hpp"
#include "platform/foundation/NSData.hpp"
#include "platform/foundation/NSDate.hpp"
#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "platform/objc/AutoreleasePool.hpp"
#include "platform/services/ProcessStart.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string>
#include <unistd.h>

namespace {

using namespace platform;
using namespace platform::foundation;
using Value = PropertyListValue;

struct Made {
    NSObject* object;
    Value value;
    unsigned levels = 1;
    // Whether every part of the value can be converted to an object.
    bool isWhole = true;
};

// A character's bytes in UTF-8.
std::string utf8(char32_t character) {
    const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
    const auto further = [&](unsigned shift) { return byte(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        return {byte(character)};
    }
    if (character < 0x800) {
        return {byte(0xC0 | character >> 6U), further(0)};
    }
    if (character < 0x10000) {
        return {byte(0xE0 | character >> 12U), further(6), further(0)};
    }
    return {byte(0xF0 | character >> 18U), further(12), further(6), further(0)};
}

class ObjectReader {
  public:
    explicit ObjectReader(std::string_view bytes)
        : draws_(bytes), isAtLength_(isTriedAtLength(bytes)) {}

    Made object(int depth = 0) {
        constexpr int deepest = 30;
        switch (draws_.next() % (depth > deepest ? 6 : 13)) {
        case 0: return text();
        case 1: return truth();
        case 2: return integer();
        case 3: return unsignedInteger();
        case 4: return real();
        case 5: return data();
        case 6: return date();
        case 7: return array(depth);
        case 8: return dictionary(depth);
        case 9: return {objc::ClassMethod<"NSNull", "null", NSObject*()>::send(), {}, 1, false};
        case 10: return oddDictionary();
        case 11: return nested(depth);
        default: return many();
        }
    }

  private:
    // Any character except lone surrogates.
    char32_t character() {
        constexpr char32_t byteOrderMark = 0xFEFF;
        constexpr char32_t firstBeyondPlane = 0x10000;
        char32_t drawn = 0;
        switch (draws_.next() % 8) {
        case 0: return byteOrderMark;
        case 1: drawn = draws_.next(); return firstBeyondPlane + (drawn << 8U | draws_.next()) * 16;
        case 2:
            drawn = draws_.next();
            drawn = drawn << 8U | draws_.next();
            break;
        case 3: return draws_.next() * 8;
        default: return draws_.next() % 0x80;
        }
        return drawn >= 0xD800 && drawn < 0xE000 ? U'x' : drawn;
    }

    Made text() {
        std::u16string units;
        std::string bytes;
        for (unsigned left = draws_.next(); left > 0; --left) {
            const char32_t character = this->character();
            bytes += utf8(character);
            if (character < 0x10000) {
                units += static_cast<char16_t>(character);
            } else {
                units += static_cast<char16_t>(0xD7C0 + (character >> 10U));
                units += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
            }
        }
        NSString* made = NSString::alloc()->initWithBytes(units.data(), 2 * units.size(),
                                                          NSString::utf16LittleEndianEncoding);
        return {objc::InstanceMethod<"NSObject", "autorelease", NSString*()>::send(made),
                std::move(bytes)};
    }

    Made truth() {
        const bool value = draws_.next() % 2 == 0;
        return {NSNumber::numberWithBool(value), value};
    }

    Made integer() {
        const auto value = static_cast<std::int64_t>(draws_.nextLong()) >> draws_.next() % 64;
        return {NSNumber::numberWithLongLong(value), value};
    }

    Made unsignedInteger() {
        const std::uint64_t value = draws_.nextLong() >> draws_.next() % 64;
        return {NSNumber::numberWithUnsignedLongLong(value), value};
    }

    // NaN does not equal itself.
    Made real() {
        const auto value = std::bit_cast<double>(draws_.nextLong());
        const double number = std::isnan(value) ? 1 : value;
        return {NSNumber::numberWithDouble(number), number};
    }

    Made data() {
        const std::string bytes = draws_.text(draws_.next());
        const auto* const first = reinterpret_cast<const std::byte*>(bytes.data());
        return {NSData::dataWithBytes(bytes.data(), bytes.size()),
                Value::Data(first, first + bytes.size())};
    }

    Made date() {
        const double seconds = static_cast<double>(draws_.next()) * 1e6 - 1e8;
        return {NSDate::dateWithTimeIntervalSinceReferenceDate(seconds), Value::Date{seconds}};
    }

    Made array(int depth) {
        auto* object = NSMutableArray::arrayWithCapacity(0);
        Value::Array values;
        Made made{object, {}};
        for (unsigned left = draws_.next() % 5; left > 0; --left) {
            Made element = this->object(depth + 1);
            object->addObject(element.object);
            values.push_back(std::move(element.value));
            grow(made, element);
        }
        made.value = std::move(values);
        return made;
    }

    Made dictionary(int depth) {
        auto* object = NSMutableDictionary::dictionaryWithCapacity(0);
        Value::Dictionary values;
        Made made{object, {}};
        for (unsigned left = draws_.next() % 5; left > 0; --left) {
            // A number in front makes the keys unique.
            Made key = text();
            const std::string number = std::to_string(left);
            NSString* name =
                objc::InstanceMethod<"NSString", "stringByAppendingString:",
                                     NSString*(NSObject*)>::send(toNSString(number), key.object);
            Made element = this->object(depth + 1);
            object->setObject(element.object, name);
            values.emplace(number + *key.value.as<std::string>(), std::move(element.value));
            grow(made, element);
        }
        made.value = std::move(values);
        return made;
    }

    static void grow(Made& made, const Made& element) {
        made.levels = std::max(made.levels, element.levels + 1);
        made.isWhole &= element.isWhole;
    }

    // A dictionary with a key that is not a string.
    Made oddDictionary() {
        auto* object = NSMutableDictionary::dictionaryWithCapacity(1);
        object->setObject(toNSString("value"), integer().object);
        return {object, {}, 1, false};
    }

    Made nested(int depth) {
        const unsigned lists = draws_.next() * 3;
        Made made = object(depth + 1);
        for (unsigned i = 0; i < lists; ++i) {
            made.object = NSArray::arrayWithObject(made.object);
            Value::Array list;
            list.push_back(std::move(made.value));
            made.value = std::move(list);
            ++made.levels;
        }
        return made;
    }

    // At length, enough elements to notice quadratic work.
    Made many() {
        const std::size_t count = isAtLength_ ? 100'000 : draws_.next();
        auto* object = NSMutableArray::arrayWithCapacity(count);
        Made element = draws_.next() % 2 == 0 ? text() : integer();
        for (std::size_t i = 0; i < count; ++i) {
            object->addObject(element.object);
        }
        return {object, Value::Array(count, element.value), count == 0 ? 1U : 2U};
    }

    Draws draws_;
    bool isAtLength_;
};

// The program's own start.
bool initializeOnce() {
    static std::string name = "conversions_fuzz";
    static std::array<char*, 2> words{name.data(), nullptr};
    initializeProcess(words.data(), environ);
    return true;
}

bool areEqual(NSObject* one, NSObject* other) {
    return objc::InstanceMethod<"NSObject", "isEqual:", objc::Bool(NSObject*)>::send(one, other) !=
           NO;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    constexpr unsigned deepest = 512;
    [[maybe_unused]] static const bool isInitialized = initializeOnce();
    const objc::AutoreleasePool pool;
    const Made made = ObjectReader(asText(bytes, size)).object();
    const bool isTooDeep = made.levels > deepest;
    require(toPropertyListValue(made.object) == (isTooDeep ? Value() : made.value),
            "an object is converted to its value, or to none if it is too deep");
    NSObject* object = toFoundation(made.value);
    require((object != nullptr) == (made.isWhole && !isTooDeep),
            "a value is converted to an object if all its parts can be and it is not too deep");
    require(object == nullptr || areEqual(object, made.object), "the object equals the original");
    require(object == nullptr || toPropertyListValue(object) == made.value,
            "the object's parts have the types of the original");
    return 0;
}
