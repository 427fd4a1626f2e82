#include "kovraUninstaller/system/Shell.hpp"

#include "platform/base/ChildProcess.hpp"
#include "platform/base/Utf8.hpp"

#include <utility>

namespace kovra {

Shell::Result::Result(std::int32_t terminationStatus, std::string data)
    : terminationStatus(terminationStatus), data(std::move(data)),
      isText(platform::isValidUtf8(this->data)) {}

std::string_view Shell::Result::output() const {
    return isText ? std::string_view(data) : std::string_view();
}

Shell::Result Shell::run(const std::string& executablePath,
                         const std::vector<std::string>& arguments,
                         std::optional<std::string_view> stdinData) {
    platform::ChildResult ended = platform::runChild({executablePath, arguments, stdinData});
    return {ended.terminationStatus, std::move(ended.output)};
}

} // namespace kovra
