#pragma once

#include "platform/base/PropertyListValue.hpp"

#include <optional>

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

} // namespace kovra
