#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

/// A value of any property-list type, kept exactly. A default-constructed one is of no type and
/// cannot be serialized.
class PropertyListValue {
  public:
    using Array = std::vector<PropertyListValue>;
    using Dictionary = std::map<std::string, PropertyListValue, std::less<>>;
    using Data = std::vector<std::byte>;

    /// Seconds since 2001-01-01 00:00:00 UTC.
    struct Date {
        double secondsSinceReferenceDate = 0;
        bool operator==(const Date&) const = default;
    };

    /// Integers are std::int64_t wherever they fit, std::uint64_t only above that.
    using Storage = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double,
                                 std::string, Date, Data, Array, Dictionary>;

    PropertyListValue() = default;

    PropertyListValue(bool value) : storage(value) {}

    PropertyListValue(int value) : storage(static_cast<std::int64_t>(value)) {}

    PropertyListValue(std::int64_t value) : storage(value) {}

    PropertyListValue(std::uint64_t value) {
        if (std::in_range<std::int64_t>(value)) {
            storage = static_cast<std::int64_t>(value);
        } else {
            storage = value;
        }
    }

    PropertyListValue(double value) : storage(value) {}

    PropertyListValue(const char* value) : storage(std::string(value)) {}

    PropertyListValue(std::string value) : storage(std::move(value)) {}

    PropertyListValue(Date value) : storage(value) {}

    PropertyListValue(Data value) : storage(std::move(value)) {}

    PropertyListValue(Array value) : storage(std::move(value)) {}

    PropertyListValue(Dictionary value) : storage(std::move(value)) {}

    /// The value as a T; null when it is of another type.
    template <class T>
    [[nodiscard]] const T* as() const {
        return std::get_if<T>(&storage);
    }

    template <class T>
    [[nodiscard]] T* as() {
        return std::get_if<T>(&storage);
    }

    [[nodiscard]] const Storage& variant() const { return storage; }

    bool operator==(const PropertyListValue&) const = default;

  private:
    Storage storage;
};

} // namespace platform
