#include "kovraUninstaller/logging/UninstallerLog.hpp"

#include "kovraUninstaller/logging/LogFile.hpp"
#include "kovraUninstaller/logging/LogLine.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/services/Directories.hpp"
#include "platform/services/MainBundle.hpp"
#include "platform/services/UnifiedLog.hpp"

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

} // namespace

const platform::UnifiedLog& UninstallerLog::log() {
    static const platform::UnifiedLog& only = *new platform::UnifiedLog(
        platform::mainBundleIdentifier().value_or(defaultSubsystem), "Uninstaller");
    return only;
}

LogFile& UninstallerLog::fileHandle() {
    static LogFile& only = *new LogFile(logDir());
    return only;
}

std::string UninstallerLog::dateFormatter(std::time_t moment) {
    return std::string(logDate(moment, localOffset(moment)).text());
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
        fileHandle().append(logLine(message));
    }
}

void UninstallerLog::error(std::string_view format,
                           std::initializer_list<std::string_view> arguments) {
    log().error(expanded(format, arguments));
}

} // namespace kovra
