#pragma once

#include <optional>
#include <plist/plist.h>
#include <string>
#include <string_view>

namespace practice {

/// An attribute's value as `security` prints it behind the equals sign: plain text between quotes,
/// other bytes as hexadecimal digits with a quoted copy, `<NULL>` for none.
std::string blobText(const std::optional<std::string>& value);

/// An item's whole entry, as the dump and a deletion print it. `keychain` is the file's path.
std::string entryText(std::string_view keychain, plist_t item);

/// An attribute of an item: a string's or a data node's bytes; nothing when it is absent.
std::optional<std::string> attribute(plist_t item, const char* name);

} // namespace practice
