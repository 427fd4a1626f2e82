#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kovra {

/// The user's keyboard and input-source settings, read and replaced as a whole through the
/// system's `defaults` tool. No instances, no state. Reading, changing and writing back is not
/// one action: a change that the system makes in between is lost.
class HIToolboxStore {
  public:
    HIToolboxStore() = delete;

    using Dictionary = platform::PropertyListValue::Dictionary;

    /// The domain's contents, or nothing when they cannot be had. Blocks; not the main thread.
    [[nodiscard]] static std::optional<Dictionary> read();

    /// Replaces everything in the domain, so pass what `read` gave, changed, and never a part of
    /// it. True when the tool says so; false, with nothing run, when a value inside is of no
    /// property-list type. Blocks; not the main thread.
    [[nodiscard]] static bool write(const Dictionary& dictionary);
};

/// A value's keys and strings, verbatim, and its data as hexadecimal digits, each on a line of its
/// own, those of nested values too. Numbers, dates and truth values have no text that a word could
/// be found in and are left out. Any thread.
[[nodiscard]] std::string textOf(const platform::PropertyListValue& value);

/// Whether an entry of the keyboard settings is the product's: its text, in lower case, holds the
/// product's word. Any thread.
[[nodiscard]] bool isProductEntry(const platform::PropertyListValue& entry);

/// The entries under a key of the keyboard settings when they are an array of dictionaries and of
/// nothing else; otherwise null. Any thread.
[[nodiscard]] platform::PropertyListValue::Array*
inputSourceEntries(platform::PropertyListValue::Dictionary& settings, std::string_view key);

/// Takes the product's entries out of the keyboard settings and gives how many they were. What is
/// under the keys but no array of entries stays as it is, and so does all else. Any thread.
std::size_t removeProductEntries(platform::PropertyListValue::Dictionary& settings);

} // namespace kovra
