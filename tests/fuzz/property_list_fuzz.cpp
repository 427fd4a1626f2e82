// Any bytes: the reader does not crash, and a value that it reads survives writing and reading.

#include "platform/services/PropertyListSerialization.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

#include <cmath>

namespace {

using platform::PropertyListValue;

// XML has dates to the second, and NaN does not equal itself.
bool survivesXml(const PropertyListValue& value) {
    if (const auto* date = value.as<PropertyListValue::Date>()) {
        return date->secondsSinceReferenceDate == std::floor(date->secondsSinceReferenceDate);
    }
    if (const auto* number = value.as<double>()) {
        return !std::isnan(*number);
    }
    if (const auto* array = value.as<PropertyListValue::Array>()) {
        for (const PropertyListValue& element : *array) {
            if (!survivesXml(element)) {
                return false;
            }
        }
    }
    if (const auto* dictionary = value.as<PropertyListValue::Dictionary>()) {
        for (const auto& [key, element] : *dictionary) {
            if (!survivesXml(element)) {
                return false;
            }
        }
    }
    return true;
}

void writeAndReadBack(const PropertyListValue& value) {
    const auto xml = platform::serializeXmlPropertyList(value);
    if (xml && survivesXml(value)) {
        require(platform::parsePropertyList(*xml) == value, "what was written is read back");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view input = asText(bytes, size);
    const auto value = platform::parsePropertyList(input);
    if (value) {
        writeAndReadBack(*value);
    }
    if (isTriedAtLength(input)) {
        const std::string longInput = atLength(input);
        static_cast<void>(platform::parsePropertyList(longInput));
        if (value) {
            writeAndReadBack(PropertyListValue::Array(longInput.size() / size, *value));
        }
    }
    return 0;
}
