#include "kovraUninstaller/logging/UninstallerLog.hpp"

#include "kovraUninstaller/logging/LogDate.hpp"
#include "kovraUninstaller/logging/OpenLog.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/services/Directories.hpp"
#include "platform/services/MainBundle.hpp"

#include <ctime>

namespace kovra {

namespace {

constexpr const char* defaultSubsystem = "ai.kovra.KovraUninstaller";

std::string expanded(std::string_view format, std::initializer_list<std::string_view> arguments) {
    constexpr std::string_view placeholder = "%{public}@";
    std::string message;
    const auto* next = arguments.begin();
    while (true) {
        const std::size_t at = format.find(placeholder);
        message += format.substr(0, at);
        if (at == std::string_view::npos) {
            return message;
        }
        message += next != arguments.end() ? *next++ : "(null)";
        format.remove_prefix(at + placeholder.size());
    }
}

std::string stamped(std::string_view message) {
    std::string line;
    line.append("[").append(LogDate(std::time(nullptr)).text()).append("] ");
    line.append(message).append("\n");
    return line;
}

} // namespace

const platform::UnifiedLog& unifiedLog() {
    static const platform::UnifiedLog& only = *new platform::UnifiedLog(
        platform::mainBundleIdentifier().value_or(defaultSubsystem), "Uninstaller");
    return only;
}

LogFile& openLog() {
    static LogFile& only = *new LogFile(UninstallerLog::logDir());
    return only;
}

const std::string& UninstallerLog::logDir() {
    static const std::string& only =
        *new std::string(platform::homeDirectory() + "/Library/Logs/kovraUninstaller");
    return only;
}

const std::string& UninstallerLog::logFile() {
    static const std::string& only = *new std::string(logDir() + "/" + LogFile::name);
    return only;
}

const std::string& UninstallerLog::sessionMarkerFile() {
    static const std::string& only = *new std::string(logDir() + "/.session_active");
    return only;
}

void UninstallerLog::file(std::string_view message) {
    if (platform::isValidUtf8(message)) {
        openLog().append(stamped(message));
    }
}

void UninstallerLog::endSession() {
    openLog().appendLast(stamped("Session ended normally"));
    removeSessionMarker();
}

void UninstallerLog::error(std::string_view format,
                           std::initializer_list<std::string_view> arguments) {
    unifiedLog().error(expanded(format, arguments));
}

} // namespace kovra
