#include "kovraUninstaller/system/Shell.hpp"

#include "platform/base/ChildProcess.hpp"
#include "platform/base/Utf8.hpp"

#include <utility>

namespace kovra {

Shell::Result Shell::run(const std::string& executablePath,
                         const std::vector<std::string>& arguments,
                         std::optional<std::string_view> stdinData) {
    platform::ChildResult ended = platform::spawnAndWait({executablePath, arguments, stdinData});
    const platform::SharedBytes data(std::move(ended.output));
    return {ended.terminationStatus, platform::isValidUtf8(data) ? data : platform::SharedBytes(),
            data};
}

} // namespace kovra
