#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <plist/plist.h>
#include <string>
#include <string_view>
#include <vector>

namespace practice {

struct PlistFree {
    void operator()(void* node) const { plist_free(node); }
};

/// A property list that is owned. A bare plist_t is a borrowed node of one.
using Plist = std::unique_ptr<void, PlistFree>;

/// The property list, XML or binary, that the bytes spell; nothing when they spell none.
Plist parsePlist(std::string_view bytes);

/// The property list in the file; nothing when there is no file or no property list in it.
Plist readPlist(const std::string& path);

/// Replaces the file. Throws std::system_error.
void writePlist(const std::string& path, plist_t root);

std::string plistXml(plist_t root);
std::string plistBinary(plist_t root);
bool isBinaryPlist(std::string_view bytes);

bool isDictionary(plist_t node);
/// The value under the key; nullptr when there is none, or node is no dictionary.
plist_t itemAt(plist_t node, const char* key);
/// A string's text; nothing for any other node.
std::optional<std::string> text(plist_t node);
std::string textAt(plist_t node, const char* key);
double realAt(plist_t node, const char* key);
int64_t integerAt(plist_t node, const char* key);
bool boolAt(plist_t node, const char* key);
/// A data node's bytes.
std::string bytesOf(plist_t node);
/// The members of an array; none when node is no array.
std::vector<plist_t> elements(plist_t node);
/// The members of an array that are strings.
std::vector<std::string> texts(plist_t node);

struct Member {
    std::string key;
    plist_t value;
};

/// The members of a dictionary, in its order.
std::vector<Member> members(plist_t node);

} // namespace practice
