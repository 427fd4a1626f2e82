#include "practice-mac/stand-ins/Plist.hpp"

#include "practice-mac/stand-ins/Files.hpp"

#include <cstdlib>
#include <type_traits>

namespace practice {

namespace {

using Text = std::unique_ptr<char, decltype(&std::free)>;

std::string taken(char* bytes, uint32_t length) {
    const Text owned(bytes, &std::free);
    return owned ? std::string(owned.get(), length) : std::string();
}

// From libplist 2.3 on, one more argument takes the format that was found.
template <typename Read>
plist_t parsedBy(Read read, std::string_view bytes) {
    plist_t root = nullptr;
    const auto size = static_cast<uint32_t>(bytes.size());
    if constexpr (std::is_invocable_v<Read, const char*, uint32_t, plist_t*>) {
        read(bytes.data(), size, &root);
    } else {
        read(bytes.data(), size, &root, nullptr);
    }
    return root;
}

} // namespace

Plist parsePlist(std::string_view bytes) {
    return Plist(parsedBy(plist_from_memory, bytes));
}

Plist readPlist(const std::string& path) {
    const std::optional<std::string> bytes = readFile(path);
    return bytes ? parsePlist(*bytes) : Plist();
}

void writePlist(const std::string& path, plist_t root) {
    replaceFile(path, plistXml(root));
}

std::string plistXml(plist_t root) {
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_xml(root, &bytes, &length);
    return taken(bytes, length);
}

std::string plistBinary(plist_t root) {
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    return taken(bytes, length);
}

bool isBinaryPlist(std::string_view bytes) {
    return bytes.starts_with("bplist");
}

bool isDictionary(plist_t node) {
    return node != nullptr && plist_get_node_type(node) == PLIST_DICT;
}

plist_t itemAt(plist_t node, const char* key) {
    return isDictionary(node) ? plist_dict_get_item(node, key) : nullptr;
}

std::optional<std::string> text(plist_t node) {
    if (node == nullptr || plist_get_node_type(node) != PLIST_STRING) {
        return std::nullopt;
    }
    uint64_t length = 0;
    const char* bytes = plist_get_string_ptr(node, &length);
    return std::string(bytes, length);
}

std::string textAt(plist_t node, const char* key) {
    return text(itemAt(node, key)).value_or(std::string());
}

double realAt(plist_t node, const char* key) {
    plist_t item = itemAt(node, key);
    double value = 0;
    if (item != nullptr && plist_get_node_type(item) == PLIST_REAL) {
        plist_get_real_val(item, &value);
    }
    return value;
}

int64_t integerAt(plist_t node, const char* key) {
    plist_t item = itemAt(node, key);
    uint64_t value = 0;
    if (item != nullptr && plist_get_node_type(item) == PLIST_UINT) {
        plist_get_uint_val(item, &value);
    }
    return static_cast<int64_t>(value);
}

bool boolAt(plist_t node, const char* key) {
    plist_t item = itemAt(node, key);
    uint8_t value = 0;
    if (item != nullptr && plist_get_node_type(item) == PLIST_BOOLEAN) {
        plist_get_bool_val(item, &value);
    }
    return value != 0;
}

std::string bytesOf(plist_t node) {
    char* bytes = nullptr;
    uint64_t length = 0;
    if (node != nullptr && plist_get_node_type(node) == PLIST_DATA) {
        plist_get_data_val(node, &bytes, &length);
    }
    return taken(bytes, static_cast<uint32_t>(length));
}

std::vector<plist_t> elements(plist_t node) {
    std::vector<plist_t> found;
    if (node != nullptr && plist_get_node_type(node) == PLIST_ARRAY) {
        const uint32_t count = plist_array_get_size(node);
        found.reserve(count);
        // By index this would be quadratic; the iterator walks the list once.
        plist_array_iter iterator = nullptr;
        plist_array_new_iter(node, &iterator);
        for (uint32_t index = 0; index < count; ++index) {
            plist_t item = nullptr;
            plist_array_next_item(node, iterator, &item);
            found.push_back(item);
        }
        std::free(iterator);
    }
    return found;
}

std::vector<std::string> texts(plist_t node) {
    std::vector<std::string> found;
    for (plist_t item : elements(node)) {
        if (std::optional<std::string> value = text(item)) {
            found.push_back(std::move(*value));
        }
    }
    return found;
}

std::vector<Member> members(plist_t node) {
    std::vector<Member> found;
    if (isDictionary(node)) {
        plist_dict_iter iterator = nullptr;
        plist_dict_new_iter(node, &iterator);
        for (;;) {
            char* key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, iterator, &key, &value);
            if (key == nullptr) {
                break;
            }
            const Text owned(key, &std::free);
            found.push_back({owned.get(), value});
        }
        std::free(iterator);
    }
    return found;
}

} // namespace practice
