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
#include <sys/utsname.h>
#include <unistd.h>

// sysctlbyname(3). The practice Mac's system.plist holds the values under the same names.

namespace mac {

namespace {

constexpr const char* practiceMacSystem = "/var/db/practice-mac/system.plist";

} // namespace

std::optional<std::string> practiceMacText(std::string_view key) {
    std::ifstream file(practiceMacSystem, std::ios::binary);
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

// Outside of practice Macs the values of this machine.
std::optional<std::string> systemText(std::string_view name) {
    if (auto text = practiceMacText(name)) {
        return text;
    }
    utsname names{};
    if (::access(practiceMacSystem, F_OK) == 0 || ::uname(&names) != 0) {
        return std::nullopt;
    }
    if (name == "hw.model") {
        return &names.machine[0];
    }
    return name == "kern.osversion" ? std::optional<std::string>(&names.release[0]) : std::nullopt;
}

namespace darwin {

// A buffer that is too small is left alone (ENOMEM); an unknown name is ENOENT.
int sysctlbyname(const char* name, void* value, std::size_t* size, const void* newValue,
                 std::size_t) {
    if (newValue != nullptr) {
        fail("sysctlbyname sets %s", name);
    }
    const std::optional<std::string> text = systemText(name);
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
