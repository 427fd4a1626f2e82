#include "platform/services/PropertyListSerialization.hpp"

#include "platform/services/propertylist/PropertyListForms.hpp"

// GNUstep's own serialisation cuts large unsigned numbers when it reads and mangles characters
// beyond the basic plane when it writes XML, so neither is used here.

namespace platform {

std::optional<PropertyListValue> parsePropertyList(std::string_view bytes) {
    return propertylist::isBinary(bytes) ? propertylist::readBinary(bytes)
                                         : propertylist::readXml(bytes);
}

std::optional<std::string> serializeXmlPropertyList(const PropertyListValue& value) {
    return propertylist::writeXml(value);
}

} // namespace platform
