#include "platform/services/LocalizedSearch.hpp"

#include "platform/base/Utf8.hpp"
#include "platform/services/TextCase.hpp"

namespace platform {

// No language of the person's is asked for: the toolkit would have to be entered for that, which
// background threads may not.
bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part) {
    return isValidUtf8(text) && isValidUtf8(part) &&
           lowercased(text).find(lowercased(part)) != std::string::npos;
}

} // namespace platform
