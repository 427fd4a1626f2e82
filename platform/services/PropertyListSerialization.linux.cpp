#include "platform/services/PropertyListSerialization.hpp"

#include "platform/base/Utf8.hpp"
#include "platform/services/propertylist/PropertyListForms.hpp"

#include <charconv>
#include <cmath>
#include <string_view>

// GNUstep's serialization is not used: it truncates large unsigned numbers when it reads, and
// writes characters beyond the Basic Multilingual Plane wrong in XML.

namespace platform {

namespace {

// Writes values as XML; `failed` is set for good when one cannot be written.
class Writer {
  public:
    bool failed = false;
    std::string xml;

    void value(const PropertyListValue& value) {
        std::visit([this](const auto& alternative) { (*this)(alternative); }, value.variant());
    }

    void operator()(std::monostate) { failed = true; }

    void operator()(bool value) { xml += value ? "<true/>\n" : "<false/>\n"; }

    void operator()(std::int64_t value) { element("integer", std::to_string(value)); }

    void operator()(std::uint64_t value) { element("integer", std::to_string(value)); }

    void operator()(double value) { element("real", digits(value)); }

    void operator()(const std::string& value) { element("string", escaped(value)); }

    void operator()(PropertyListValue::Date value) {
        const auto text = propertylist::formatDate(value);
        failed |= !text;
        element("date", text.value_or(""));
    }

    void operator()(const PropertyListValue::Data& value) {
        element("data", propertylist::encodeBase64(value));
    }

    void operator()(const PropertyListValue::Array& values) {
        xml += "<array>\n";
        for (const PropertyListValue& element : values) {
            value(element);
        }
        xml += "</array>\n";
    }

    void operator()(const PropertyListValue::Dictionary& values) {
        xml += "<dict>\n";
        for (const auto& [key, element] : values) {
            this->element("key", escaped(key));
            value(element);
        }
        xml += "</dict>\n";
    }

  private:
    void element(std::string_view name, std::string_view content) {
        xml.append("<").append(name).append(">").append(content);
        xml.append("</").append(name).append(">\n");
    }

    static std::string digits(double value) {
        if (std::isnan(value)) {
            return "nan";
        }
        if (std::isinf(value)) {
            return value > 0 ? "+infinity" : "-infinity";
        }
        char text[32];
        const auto end = std::to_chars(std::begin(text), std::end(text), value).ptr;
        return {std::begin(text), end};
    }

    // XML cannot represent most control characters. A literal carriage return would be read back as
    // a line feed.
    std::string escaped(std::string_view text) {
        failed |= !isValidUtf8(text) || text.find("\xEF\xBF\xBE") != std::string_view::npos ||
                  text.find("\xEF\xBF\xBF") != std::string_view::npos;
        std::string result;
        result.reserve(text.size());
        for (const char c : text) {
            switch (c) {
            case '&': result += "&amp;"; break;
            case '<': result += "&lt;"; break;
            case '>': result += "&gt;"; break;
            case '\r': result += "&#13;"; break;
            default:
                failed |= static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n';
                result += c;
            }
        }
        return result;
    }
};

} // namespace

std::optional<PropertyListValue> parsePropertyList(std::string_view bytes) {
    return propertylist::isBinary(bytes) ? propertylist::readBinary(bytes)
                                         : propertylist::readXml(bytes);
}

std::optional<std::string> serializeXmlPropertyList(const PropertyListValue& value) {
    Writer writer;
    writer.xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                 "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                 "<plist version=\"1.0\">\n";
    writer.value(value);
    writer.xml += "</plist>\n";
    return writer.failed ? std::nullopt : std::optional(std::move(writer.xml));
}

} // namespace platform
