#include "platform/services/TextCase.hpp"

#include "platform/base/Utf8.hpp"

#include <algorithm>
#include <array>
#include <clocale>
#include <cwchar>
#include <cwctype>
#include <locale.h>

namespace platform {

namespace {

// This thread's locale is C.UTF-8 during its lifetime, whatever the user's language.
class UnicodeLocale {
  public:
    UnicodeLocale() : before_(::uselocale(unicode())) {}

    ~UnicodeLocale() { ::uselocale(before_); }

    UnicodeLocale(const UnicodeLocale&) = delete;
    UnicodeLocale& operator=(const UnicodeLocale&) = delete;

  private:
    static locale_t unicode() {
        static const locale_t only = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return only;
    }

    locale_t before_;
};

} // namespace

std::string lowercasedUnicode(std::string_view text) {
    if (!isValidUtf8(text)) {
        return std::string(text);
    }
    const UnicodeLocale locale;
    std::string lower;
    lower.reserve(text.size());
    std::mbstate_t reading{};
    std::mbstate_t writing{};
    std::array<char, 16> bytes{};
    while (!text.empty()) {
        wchar_t character = 0;
        // For U+0000 mbrtowc returns 0, but it is one byte long.
        const std::size_t length =
            std::max<std::size_t>(1, std::mbrtowc(&character, text.data(), text.size(), &reading));
        if (length > text.size()) {
            // A conversion error, as when the C.UTF-8 locale is missing: the rest stays unchanged.
            return lower.append(text);
        }
        const auto lowerCase =
            static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(character)));
        lower.append(bytes.data(), std::wcrtomb(bytes.data(), lowerCase, &writing));
        text.remove_prefix(length);
    }
    return lower;
}

// Not by the user's language, which only GNUstep knows: background threads must not enter it.
bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part) {
    return isValidUtf8(text) && isValidUtf8(part) &&
           lowercased(text).find(lowercased(part)) != std::string::npos;
}

} // namespace platform
