#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "system/Errors.hpp"
#include "system/PracticeMac.hpp"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <plist/plist.h>

// sysctlbyname(3). What a Mac's kernel would know stands in the practice Mac's system.plist, under
// the same names.

namespace mac {

std::optional<std::string> practiceMacText(std::string_view key) {
    std::ifstream file("/var/db/practice-mac/system.plist", std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    plist_t root = nullptr;
    plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    const std::unique_ptr<void, decltype(&plist_free)> owner(root, &plist_free);
    plist_t value = root == nullptr || plist_get_node_type(root) != PLIST_DICT
                        ? nullptr
                        : plist_dict_get_item(root, std::string(key).c_str());
    if (value == nullptr || plist_get_node_type(value) != PLIST_STRING) {
        return std::nullopt;
    }
    char* text = nullptr;
    plist_get_string_val(value, &text);
    const std::string result(text);
    std::free(text);
    return result;
}

namespace {

namespace darwin {

// A buffer that is too small is left alone (ENOMEM); a name that is not known is ENOENT.
int sysctlbyname(const char* name, void* value, std::size_t* size, const void* newValue,
                 std::size_t) {
    if (newValue != nullptr) {
        fail("sysctlbyname sets %s", name);
    }
    const std::optional<std::string> text = practiceMacText(name);
    if (!text) {
        return failWith(DarwinError::noEntry);
    }
    const std::size_t needed = text->size() + 1;
    if (value != nullptr) {
        if (*size < needed) {
            return failWith(DarwinError::noMemory);
        }
        std::memcpy(value, text->c_str(), needed);
    }
    *size = needed;
    return 0;
}

} // namespace darwin

} // namespace

Symbols systemControlSymbols() {
    static const Symbol symbols[] = {
        {"_sysctlbyname", address(darwin::sysctlbyname)},
    };
    return symbols;
}

} // namespace mac
