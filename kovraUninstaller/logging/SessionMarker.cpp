#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/RemoveTree.hpp"
#include "platform/base/Utf8.hpp"
#include "platform/base/WriteFile.hpp"

#include <ctime>

namespace kovra {

void UninstallerLog::writeSessionMarker() {
    platform::writeFileAtomically(sessionMarkerFile(), dateFormatter(std::time(nullptr)));
}

void UninstallerLog::removeSessionMarker() {
    static_cast<void>(platform::removeTree(sessionMarkerFile()));
}

// The marker's text is quoted as it stands, whatever it is.
void UninstallerLog::checkPreviousSession() {
    if (!platform::fileExists(sessionMarkerFile())) {
        return;
    }
    const auto start = platform::readFile(sessionMarkerFile());
    if (start && platform::isValidUtf8(*start)) {
        file("⚠️ Previous session (started " + *start + ") ended abnormally");
    } else {
        file("⚠️ Previous session ended abnormally");
    }
    removeSessionMarker();
}

} // namespace kovra
