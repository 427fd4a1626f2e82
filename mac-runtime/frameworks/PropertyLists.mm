// NSPropertyListSerialization for the program, by libplist: GNUstep's raises on malformed data, and
// loses unsigned integers beyond INT64_MAX and, in XML, characters beyond U+FFFF. Calls of the
// toolkit itself still go to GNUstep, which also reads older formats.

#include "frameworks/Objects.h"
#include "loader/Failure.hpp"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <plist/plist.h>
#include <string>
#include <string_view>

namespace mac {

namespace {

using Node = std::unique_ptr<void, decltype(&plist_free)>;

Node owned(plist_t node) {
    return {node, &plist_free};
}

std::uint64_t bigEndian(std::uint64_t value) {
    return __builtin_bswap64(value);
}

// libplist's functions do not tell an integer's sign, nor dates beyond 32 bits of seconds in every
// version. The binary form of a list of the one object does.
struct BinaryObject {
    std::uint8_t marker;
    std::uint64_t last; // its last eight bytes
};

BinaryObject binaryFormOf(plist_t node) {
    char* bytes = nullptr;
    std::uint32_t size = 0;
    const Node copy = owned(plist_copy(node));
    plist_to_bin(copy.get(), &bytes, &size);
    BinaryObject object{static_cast<std::uint8_t>(bytes[8]), 0};
    const std::size_t length = std::size_t{1} << (object.marker & 0xf);
    if (length >= 8) {
        std::memcpy(&object.last, bytes + 9 + length - 8, 8);
        object.last = bigEndian(object.last);
    }
    std::free(bytes);
    return object;
}

constexpr std::uint8_t markerOfSigned = 0x13;
constexpr std::uint8_t markerOfUnsigned = 0x14;
constexpr std::uint8_t markerOfDate = 0x33;

// The reverse: a binary list of that one object.
plist_t nodeOf(const BinaryObject& object) {
    std::string list = "bplist00";
    list += static_cast<char>(object.marker);
    if (object.marker == markerOfUnsigned) {
        list.append(8, '\0');
    }
    const std::uint64_t value = bigEndian(object.last);
    list.append(reinterpret_cast<const char*>(&value), sizeof value);
    const auto offsetTable = static_cast<char>(list.size());
    list += '\x08';
    list.append(6, '\0');
    list += std::string("\1\1", 2); // sizes of offsets and references
    list +=
        std::string("\0\0\0\0\0\0\0\1", 8) + std::string(8, '\0'); // one object; it is the first
    list += std::string(7, '\0') + offsetTable;
    plist_t node = nullptr;
    plist_from_bin(list.data(), static_cast<std::uint32_t>(list.size()), &node);
    return node;
}

id objectOf(plist_t node);

id arrayOf(plist_t node) {
    NSMutableArray* array = [NSMutableArray array];
    for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
        id item = objectOf(plist_array_get_item(node, i));
        if (item == nil) {
            return nil;
        }
        [array addObject:item];
    }
    return array;
}

id dictionaryOf(plist_t node) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    while (true) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator, &key, &value);
        if (value == nullptr) {
            break;
        }
        id item = objectOf(value);
        NSString* name = [NSString stringWithUTF8String:key];
        std::free(key);
        if (item == nil || name == nil) {
            dictionary = nil;
            break;
        }
        [dictionary setObject:item forKey:name];
    }
    std::free(iterator);
    return dictionary;
}

id integerOf(plist_t node) {
    std::uint64_t value = 0;
    plist_get_uint_val(node, &value);
    const bool hasTopBit = value >> 63 != 0;
    return hasTopBit && binaryFormOf(node).marker == markerOfUnsigned
               ? [NSNumber numberWithUnsignedLongLong:value]
               : [NSNumber numberWithLongLong:static_cast<long long>(value)];
}

id objectOf(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_DICT: return dictionaryOf(node);
    case PLIST_ARRAY: return arrayOf(node);
    case PLIST_UINT: return integerOf(node);
    case PLIST_BOOLEAN: {
        std::uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return [NSNumber numberWithBool:value != 0];
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return [NSNumber numberWithDouble:value];
    }
    case PLIST_STRING: {
        char* text = nullptr;
        plist_get_string_val(node, &text);
        NSString* string = [NSString stringWithUTF8String:text];
        std::free(text);
        return string;
    }
    case PLIST_DATA: {
        char* bytes = nullptr;
        std::uint64_t size = 0;
        plist_get_data_val(node, &bytes, &size);
        NSData* data = [NSData dataWithBytes:bytes length:size];
        std::free(bytes);
        return data;
    }
    case PLIST_DATE:
        return [NSDate
            dateWithTimeIntervalSinceReferenceDate:std::bit_cast<double>(binaryFormOf(node).last)];
    // A keyed archive's UID reads as a dictionary on a Mac.
    case PLIST_UID: {
        std::uint64_t value = 0;
        plist_get_uid_val(node, &value);
        return [NSDictionary dictionaryWithObject:[NSNumber numberWithLongLong:value]
                                           forKey:@"CF$UID"];
    }
    default: return nil;
    }
}

Node nodeFor(id object);

Node nodeForNumber(NSNumber* number) {
    const std::string_view type = [number objCType];
    if (object_getClass(number) == classNamed("NSBoolNumber") || type == "B") {
        return owned(plist_new_bool([number boolValue] ? 1 : 0));
    }
    if (type == "d" || type == "f") {
        return owned(plist_new_real([number doubleValue]));
    }
    const unsigned long long value = [number unsignedLongLongValue];
    return owned(type == "Q" && value >> 63 != 0 ? nodeOf({markerOfUnsigned, value})
                                                 : nodeOf({markerOfSigned, value}));
}

Node nodeForCollection(id object) {
    if ([object isKindOfClass:[NSArray class]]) {
        Node array = owned(plist_new_array());
        for (id item in static_cast<NSArray*>(object)) {
            Node node = nodeFor(item);
            if (!node) {
                return node;
            }
            plist_array_append_item(array.get(), node.release());
        }
        return array;
    }
    Node dictionary = owned(plist_new_dict());
    for (id key in static_cast<NSDictionary*>(object)) {
        Node node = nodeFor([object objectForKey:key]);
        if (!node || ![key isKindOfClass:[NSString class]]) {
            return owned(nullptr);
        }
        plist_dict_set_item(dictionary.get(), [key UTF8String], node.release());
    }
    return dictionary;
}

// Null if a property list cannot hold the object.
Node nodeFor(id object) {
    if ([object isKindOfClass:[NSString class]]) {
        const char* text = [object UTF8String];
        return owned(text == nullptr ? nullptr : plist_new_string(text));
    }
    if ([object isKindOfClass:[NSNumber class]]) {
        return nodeForNumber(object);
    }
    if ([object isKindOfClass:[NSData class]]) {
        return owned(plist_new_data(static_cast<const char*>([object bytes]), [object length]));
    }
    if ([object isKindOfClass:[NSDate class]]) {
        const double seconds = [object timeIntervalSinceReferenceDate];
        return owned(nodeOf({markerOfDate, std::bit_cast<std::uint64_t>(seconds)}));
    }
    if ([object isKindOfClass:[NSArray class]] || [object isKindOfClass:[NSDictionary class]]) {
        return nodeForCollection(object);
    }
    return owned(nullptr);
}

using Form = decltype(plist_to_xml);

NSData* dataOf(id list, Form* write) {
    const Node node = nodeFor(list);
    char* bytes = nullptr;
    std::uint32_t size = 0;
    if (node) {
        write(node.get(), &bytes, &size);
    }
    NSData* data = bytes == nullptr ? nil : [NSData dataWithBytes:bytes length:size];
    std::free(bytes);
    return data;
}

NSData* xmlOf(id list) {
    return dataOf(list, plist_to_xml);
}

bool looksLikeXml(std::string_view bytes) {
    if (bytes.starts_with("\xef\xbb\xbf")) {
        bytes.remove_prefix(3);
    }
    const std::size_t begin = bytes.find_first_not_of(" \t\r\n");
    return begin != std::string_view::npos && bytes[begin] == '<' &&
           (bytes.substr(begin).starts_with("<?xml") ||
            bytes.substr(begin).starts_with("<!DOCTYPE") ||
            bytes.substr(begin).starts_with("<plist"));
}

using Reader = id(Class, SEL, NSData*, NSUInteger, NSUInteger*, NSError**);
using Writer = NSData*(Class, SEL, id, NSUInteger, NSUInteger, NSError**);
Reader* toolkitsReader = nullptr;
Writer* toolkitsWriter = nullptr;

id readList(Class self, SEL selector, NSData* data, NSUInteger options, NSUInteger* format,
            NSError** error) {
    if (!isFromProgram(__builtin_return_address(0))) {
        return toolkitsReader(self, selector, data, options, format, error);
    }
    if (options != 0 || format != nullptr || error != nullptr) {
        fail("propertyListWithData: with options, or for a format or an error");
    }
    return propertyListFrom(data);
}

NSData* writeList(Class self, SEL selector, id list, NSUInteger format, NSUInteger options,
                  NSError** error) {
    if (!isFromProgram(__builtin_return_address(0))) {
        return toolkitsWriter(self, selector, list, format, options, error);
    }
    const bool isKnown =
        format == NSPropertyListXMLFormat_v1_0 || format == NSPropertyListBinaryFormat_v1_0;
    if (!isKnown || options != 0 || error != nullptr) {
        fail("dataWithPropertyList: in the format %lu, with options, or for an error",
             static_cast<unsigned long>(format));
    }
    return format == NSPropertyListXMLFormat_v1_0 ? xmlOf(list) : dataOf(list, plist_to_bin);
}

} // namespace

id propertyListFrom(NSData* data) {
    const std::string_view bytes(static_cast<const char*>([data bytes]), [data length]);
    plist_t root = nullptr;
    if (bytes.starts_with("bplist00")) {
        plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    } else if (looksLikeXml(bytes)) {
        plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    }
    const Node owner = owned(root);
    return root == nullptr ? nil : objectOf(root);
}

id propertyListInFile(NSString* path) {
    FILE* file = std::fopen([path UTF8String], "re");
    if (file == nullptr) {
        return nil;
    }
    NSMutableData* data = [NSMutableData data];
    char bytes[65536];
    std::size_t count = 0;
    while ((count = std::fread(&bytes[0], 1, sizeof bytes, file)) > 0) {
        [data appendBytes:&bytes[0] length:count];
    }
    std::fclose(file);
    return propertyListFrom(data);
}

// Written atomically.
bool writePropertyList(id list, NSString* path) {
    NSData* data = xmlOf(list);
    const std::string target = [path UTF8String];
    const std::string made = target + ".new";
    FILE* file = data == nil ? nullptr : std::fopen(made.c_str(), "we");
    if (file == nullptr) {
        return false;
    }
    const bool isWritten = std::fwrite([data bytes], 1, [data length], file) == [data length];
    return std::fclose(file) == 0 && isWritten && std::rename(made.c_str(), target.c_str()) == 0;
}

void useOwnPropertyLists() {
    Class lists = metaclassOf(classNamed("NSPropertyListSerialization"));
    toolkitsReader = replaceMethod(lists, "propertyListWithData:options:format:error:", readList);
    toolkitsWriter = replaceMethod(lists, "dataWithPropertyList:format:options:error:", writeList);
}

} // namespace mac
