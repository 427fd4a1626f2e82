#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kovra {

/// The user's keyboard and input-source settings, read and replaced as a whole through the
/// system's `defaults` tool. No instances, no state. Reading, changing and writing back is not
/// atomic: a change that the system makes in between is lost.
class HIToolboxStore {
  public:
    HIToolboxStore() = delete;

    using Dictionary = platform::PropertyListValue::Dictionary;

    /// The domain's contents; nothing when they cannot be read. Blocks; not on the main thread.
    [[nodiscard]] static std::optional<Dictionary> read();

    /// Replaces the whole domain: pass all that `read` returned, with the changes, never a part of
    /// it. True when the tool succeeded; false, with nothing run, when a value is of no
    /// property-list type. Blocks; not on the main thread.
    [[nodiscard]] static bool write(const Dictionary& dictionary);
};

/// A value's keys and strings, verbatim, and its data in hexadecimal, each on a line of its own,
/// nested values included. Numbers, dates and Booleans are left out: the product's name cannot
/// occur in them. Any thread.
[[nodiscard]] std::string textOf(const platform::PropertyListValue& value);

/// Whether an entry of the keyboard settings is the product's: its lower-cased text contains
/// `looseMatchNeedle`. Any thread.
[[nodiscard]] bool isProductEntry(const platform::PropertyListValue& entry);

/// The entries under a key of the keyboard settings; null unless the value is an array of
/// dictionaries only. Any thread.
[[nodiscard]] platform::PropertyListValue::Array*
inputSourceEntries(platform::PropertyListValue::Dictionary& settings, std::string_view key);

/// Removes the product's entries under `hiToolboxKeys` and returns their number. Other values under
/// these keys, and all other keys, stay as they are. Any thread.
std::size_t removeProductEntries(platform::PropertyListValue::Dictionary& settings);

} // namespace kovra
