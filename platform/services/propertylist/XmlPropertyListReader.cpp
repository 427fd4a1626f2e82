#include "platform/services/propertylist/PropertyListForms.hpp"

#include <expat.h>

#include <charconv>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace platform::propertylist {

namespace {

using Value = PropertyListValue;

constexpr std::size_t deepestNesting = 512;

// expat takes the length of its input as an int.
constexpr std::size_t longestPiece = 1U << 30U;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view whiteSpace = " \t\r\n";
    const std::size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

// A whole number in decimal, or in hexadecimal after 0x; the sign may be a plus.
Value integer(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal) {
        text.remove_prefix(2);
    }
    std::uint64_t magnitude = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size()) {
        return {};
    }
    if (!negative) {
        return magnitude;
    }
    constexpr std::uint64_t largestNegated = std::uint64_t{1} << 63U;
    return magnitude > largestNegated ? Value() : Value(static_cast<std::int64_t>(0 - magnitude));
}

Value real(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? Value(number) : Value();
}

// The value of an element without children; none when its text is malformed.
Value scalar(std::string_view name, std::string_view text) {
    if (name == "string") {
        return std::string(text);
    }
    if (name == "true") {
        return true;
    }
    if (name == "false") {
        return false;
    }
    if (name == "integer") {
        return integer(trimmed(text));
    }
    if (name == "real") {
        return real(trimmed(text));
    }
    if (name == "date") {
        const auto date = parseDate(trimmed(text));
        return date ? Value(*date) : Value();
    }
    if (name == "data") {
        auto data = decodeBase64(text);
        return data ? Value(std::move(*data)) : Value();
    }
    return {};
}

struct OpenElement {
    std::string name;
    std::string text;
    Value container;
    std::string key;
    bool hasKey = false;

    [[nodiscard]] bool isDictionary() const { return name == "dict"; }

    [[nodiscard]] bool holdsElements() const {
        return isDictionary() || name == "array" || name == "plist";
    }
};

class Reader {
  public:
    Reader() : parser_(XML_ParserCreate(nullptr)) {
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(
            parser_.get(),
            [](void* self, const XML_Char* name, const XML_Char**) {
                static_cast<Reader*>(self)->open(name);
            },
            [](void* self, const XML_Char*) { static_cast<Reader*>(self)->close(); });
        XML_SetCharacterDataHandler(
            parser_.get(), [](void* self, const XML_Char* text, int length) {
                static_cast<Reader*>(self)->characters({text, static_cast<std::size_t>(length)});
            });
        // Property lists declare no entities; a declaration may be an attack by exponential
        // expansion.
        XML_SetEntityDeclHandler(parser_.get(),
                                 [](void* self, const XML_Char*, int, const XML_Char*, int,
                                    const XML_Char*, const XML_Char*, const XML_Char*,
                                    const XML_Char*) { static_cast<Reader*>(self)->fail(); });
        // Nor do they use any. The external DTD is not fetched, and an entity that it declares
        // would be dropped silently.
        XML_SetSkippedEntityHandler(parser_.get(), [](void* self, const XML_Char*, int) {
            static_cast<Reader*>(self)->fail();
        });
    }

    std::optional<Value> read(std::string_view bytes) {
        while (!failed_) {
            const std::string_view piece = bytes.substr(0, longestPiece);
            bytes.remove_prefix(piece.size());
            if (XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()),
                          bytes.empty() ? XML_TRUE : XML_FALSE) != XML_STATUS_OK) {
                failed_ = true;
            } else if (bytes.empty()) {
                break;
            }
        }
        return failed_ ? std::nullopt : std::move(result_);
    }

  private:
    void fail() {
        failed_ = true;
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    // The nesting depth, without the plist element.
    [[nodiscard]] std::size_t levels() const {
        const bool isFramed = !elements_.empty() && elements_.front().name == "plist";
        return elements_.size() - (isFramed ? 1 : 0);
    }

    void open(std::string_view name) {
        const bool nestsInScalar = !elements_.empty() && !elements_.back().holdsElements();
        const bool misplacedRoot = name == "plist" && !elements_.empty();
        if (nestsInScalar || misplacedRoot || levels() >= deepestNesting) {
            fail();
            return;
        }
        OpenElement element{std::string(name), {}, {}, {}, false};
        if (name == "dict") {
            element.container = Value::Dictionary();
        } else if (name == "array") {
            element.container = Value::Array();
        }
        elements_.push_back(std::move(element));
    }

    void characters(std::string_view text) {
        if (elements_.empty() || failed_) {
            return;
        }
        if (!elements_.back().holdsElements()) {
            elements_.back().text += text;
        } else if (!trimmed(text).empty()) {
            fail();
        }
    }

    void close() {
        if (failed_) {
            return;
        }
        OpenElement element = std::move(elements_.back());
        elements_.pop_back();
        if (element.name == "plist") {
            if (!result_) {
                fail();
            }
        } else if (element.name == "key") {
            takeKey(std::move(element.text));
        } else if (element.hasKey) {
            fail();
        } else {
            add(element.holdsElements() ? std::move(element.container)
                                        : scalar(element.name, element.text));
        }
    }

    void takeKey(std::string key) {
        if (elements_.empty() || !elements_.back().isDictionary() || elements_.back().hasKey) {
            fail();
            return;
        }
        elements_.back().key = std::move(key);
        elements_.back().hasKey = true;
    }

    void add(Value value) {
        if (value == Value()) {
            fail();
        } else if (elements_.empty() || elements_.back().name == "plist") {
            addRoot(std::move(value));
        } else if (auto* array = elements_.back().container.as<Value::Array>()) {
            array->push_back(std::move(value));
        } else if (elements_.back().hasKey) {
            OpenElement& owner = elements_.back();
            owner.container.as<Value::Dictionary>()->insert_or_assign(std::move(owner.key),
                                                                      std::move(value));
            owner.hasKey = false;
        } else {
            fail();
        }
    }

    void addRoot(Value value) {
        if (result_) {
            fail();
        }
        result_ = std::move(value);
    }

    struct FreeParser {
        void operator()(XML_Parser owned) const { XML_ParserFree(owned); }
    };

    std::unique_ptr<XML_ParserStruct, FreeParser> parser_;
    std::vector<OpenElement> elements_;
    std::optional<Value> result_;
    bool failed_ = false;
};

} // namespace

std::optional<PropertyListValue> readXml(std::string_view bytes) {
    return Reader().read(bytes);
}

} // namespace platform::propertylist
