#include "kovraUninstaller/logging/LogDate.hpp"

#include <mutex>

namespace kovra {

LogDate::LogDate(std::time_t moment) {
    static std::once_flag zoneIsKnown;
    std::call_once(zoneIsKnown, ::tzset);
    std::tm local{};
    ::localtime_r(&moment, &local);
    length = std::strftime(characters.data(), characters.size(), "%Y-%m-%d %H:%M:%S", &local);
}

} // namespace kovra
