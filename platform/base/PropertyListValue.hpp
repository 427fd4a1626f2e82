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

    PropertyListValue(bool value) : storage_(value) {}

    PropertyListValue(int value) : storage_(static_cast<std::int64_t>(value)) {}

    PropertyListValue(std::int64_t value) : storage_(value) {}

    PropertyListValue(std::uint64_t value) {
        if (std::in_range<std::int64_t>(value)) {
            storage_ = static_cast<std::int64_t>(value);
        } else {
            storage_ = value;
        }
    }

    PropertyListValue(double value) : storage_(value) {}

    PropertyListValue(const char* value) : storage_(std::string(value)) {}

    PropertyListValue(std::string value) : storage_(std::move(value)) {}

    PropertyListValue(Date value) : storage_(value) {}

    PropertyListValue(Data value) : storage_(std::move(value)) {}

    PropertyListValue(Array value) : storage_(std::move(value)) {}

    PropertyListValue(Dictionary value) : storage_(std::move(value)) {}

    /// The value as a T; null when it is of another type.
    template <class T>
    [[nodiscard]] const T* as() const {
        return std::get_if<T>(&storage_);
    }

    template <class T>
    [[nodiscard]] T* as() {
        return std::get_if<T>(&storage_);
    }

    [[nodiscard]] const Storage& variant() const { return storage_; }

    bool operator==(const PropertyListValue&) const = default;

  private:
    Storage storage_;
};

} // namespace platform
