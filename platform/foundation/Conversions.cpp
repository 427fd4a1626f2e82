#include "platform/foundation/Conversions.hpp"

#include "platform/base/Utf8.hpp"
#include "platform/foundation/NSData.hpp"
#include "platform/foundation/NSDate.hpp"
#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/NSNumber.hpp"

#include <bit>
#include <cstring>
#include <limits>

namespace platform::foundation {

namespace {

using Value = PropertyListValue;

// How many levels a value may have, the value itself being the first.
constexpr unsigned deepestNesting = 512;

template <class T>
struct ClassOf;

template <>
struct ClassOf<NSString> {
    static Class get() { return objc::classNamed<"NSString">(); }
};

template <>
struct ClassOf<NSNumber> {
    static Class get() { return objc::classNamed<"NSNumber">(); }
};

template <>
struct ClassOf<NSDate> {
    static Class get() { return objc::classNamed<"NSDate">(); }
};

template <>
struct ClassOf<NSData> {
    static Class get() { return objc::classNamed<"NSData">(); }
};

template <>
struct ClassOf<NSArray> {
    static Class get() { return objc::classNamed<"NSArray">(); }
};

template <>
struct ClassOf<NSDictionary> {
    static Class get() { return objc::classNamed<"NSDictionary">(); }
};

template <class T>
T* as(NSObject* object) {
    return kindOf<T>(object, ClassOf<T>::get());
}

// One visitor for each alternative of the value. Gives null below the deepest level.
struct ToFoundation {
    unsigned depth = 0;

    [[nodiscard]] NSObject* element(const Value& value) const {
        return depth + 1 < deepestNesting ? std::visit(ToFoundation{depth + 1}, value.variant())
                                          : nullptr;
    }

    NSObject* operator()(std::monostate) const { return nullptr; }

    NSObject* operator()(bool value) const { return NSNumber::numberWithBool(value); }

    NSObject* operator()(std::int64_t value) const { return NSNumber::numberWithLongLong(value); }

    NSObject* operator()(std::uint64_t value) const {
        return NSNumber::numberWithUnsignedLongLong(value);
    }

    NSObject* operator()(double value) const { return NSNumber::numberWithDouble(value); }

    NSObject* operator()(const std::string& value) const { return toNSString(value); }

    NSObject* operator()(const Value::Date& value) const {
        return NSDate::dateWithTimeIntervalSinceReferenceDate(value.secondsSinceReferenceDate);
    }

    NSObject* operator()(const Value::Data& value) const {
        return NSData::dataWithBytes(value.data(), value.size());
    }

    NSObject* operator()(const Value::Array& values) const {
        auto* array = NSMutableArray::arrayWithCapacity(values.size());
        for (const Value& value : values) {
            NSObject* object = element(value);
            if (object == nullptr) {
                return nullptr;
            }
            array->addObject(object);
        }
        return array;
    }

    NSObject* operator()(const Value::Dictionary& values) const {
        auto* dictionary = NSMutableDictionary::dictionaryWithCapacity(values.size());
        for (const auto& [name, value] : values) {
            NSObject* key = toNSString(name);
            NSObject* object = element(value);
            if (key == nullptr || object == nullptr) {
                return nullptr;
            }
            dictionary->setObject(object, key);
        }
        return dictionary;
    }
};

// The booleans are two shared objects; a number with the value 0 or 1 is neither of them.
Value fromNumber(NSNumber* number) {
    if (number == NSNumber::numberWithBool(true)) {
        return true;
    }
    if (number == NSNumber::numberWithBool(false)) {
        return false;
    }
    const char type = *number->objCType();
    if (type == 'd' || type == 'f') {
        return number->doubleValue();
    }
    if (number->longLongValue() < 0 && number->doubleValue() > 0) {
        return static_cast<std::uint64_t>(number->unsignedLongLongValue());
    }
    return type == 'Q' ? Value(static_cast<std::uint64_t>(number->unsignedLongLongValue()))
                       : Value(static_cast<std::int64_t>(number->longLongValue()));
}

Value fromData(const NSData* data) {
    Value::Data bytes(data->length());
    if (!bytes.empty()) {
        std::memcpy(bytes.data(), data->bytes(), bytes.size());
    }
    return bytes;
}

// Data from outside may be nested so deeply that the recursion would overflow the stack.
class FromFoundation {
  public:
    // A value of no type when a part is nested too deeply.
    Value whole(NSObject* object) {
        Value value = at(object, 0);
        if (isTooDeep_) {
            return {};
        }
        return value;
    }

  private:
    Value at(NSObject* object, unsigned depth) {
        if (isTooDeep_ || depth >= deepestNesting) {
            isTooDeep_ = true;
            return {};
        }
        if (const auto* text = as<NSString>(object)) {
            return toString(text);
        }
        if (auto* number = as<NSNumber>(object)) {
            return fromNumber(number);
        }
        if (const auto* date = as<NSDate>(object)) {
            return Value::Date{date->timeIntervalSinceReferenceDate()};
        }
        if (const auto* data = as<NSData>(object)) {
            return fromData(data);
        }
        if (const auto* array = as<NSArray>(object)) {
            return fromArray(array, depth);
        }
        if (const auto* dictionary = as<NSDictionary>(object)) {
            return fromDictionary(dictionary, depth);
        }
        return {};
    }

    Value fromArray(const NSArray* array, unsigned depth) {
        Value::Array values;
        values.reserve(array->count());
        for (UInteger i = 0; i < array->count(); ++i) {
            values.push_back(at(array->objectAtIndex(i), depth + 1));
        }
        return values;
    }

    Value fromDictionary(const NSDictionary* dictionary, unsigned depth) {
        Value::Dictionary values;
        const NSArray* keys = dictionary->allKeys();
        for (UInteger i = 0; i < keys->count(); ++i) {
            NSObject* key = keys->objectAtIndex(i);
            const auto* name = as<NSString>(key);
            if (name == nullptr) {
                return {};
            }
            values.emplace(toString(name), at(dictionary->objectForKey(key), depth + 1));
        }
        return values;
    }

    bool isTooDeep_ = false;
};

// From UTF-8 the system drops a byte-order mark at the beginning.
NSString* newString(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark)) {
        static_assert(std::endian::native == std::endian::little);
        const std::u16string units = toUtf16(text);
        return NSString::alloc()->initWithBytes(units.data(), 2 * units.size(),
                                                NSString::utf16LittleEndianEncoding);
    }
    return NSString::alloc()->initWithBytes(text.data(), text.size(), NSString::utf8Encoding);
}

} // namespace

NSString* toNSString(std::string_view text) {
    if (!isValidUtf8(text)) {
        return nullptr;
    }
    return InstanceMethod<"NSObject", "autorelease", NSString*()>::send(newString(text));
}

std::string toString(const NSString* text) {
    if (text == nullptr) {
        return {};
    }
    // By length: a string may have NUL characters.
    const char* bytes = text->utf8String();
    return bytes == nullptr ? std::string()
                            : std::string(bytes, text->lengthOfBytes(NSString::utf8Encoding));
}

NSObject* toFoundation(const PropertyListValue& value) {
    return std::visit(ToFoundation(), value.variant());
}

PropertyListValue toPropertyListValue(NSObject* object) {
    return FromFoundation().whole(object);
}

} // namespace platform::foundation
