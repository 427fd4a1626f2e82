#include "kovraUninstaller/logging/UninstallerLog.hpp"
#include "platform/base/FileSystem.hpp"
#include "platform/base/RemoveTree.hpp"
#include "platform/base/Utf8.hpp"

#include <cstddef>
#include <ctime>

namespace kovra {

namespace {

// Many times a date, and little enough to read from anything that stands in the marker's place.
constexpr std::size_t mostBytesRead = 65536;

} // namespace

// Always by way of the same name, so that what a killed session left half-written goes with the
// next one's marker.
void UninstallerLog::writeSessionMarker() {
    platform::writeFileAtomically(sessionMarkerFile(), dateFormatter(std::time(nullptr)),
                                  sessionMarkerFile() + ".new");
}

void UninstallerLog::removeSessionMarker() {
    static_cast<void>(platform::removeTree(sessionMarkerFile()));
}

// The marker's text is quoted as it stands, whatever it is; too long a one cannot be read.
void UninstallerLog::checkPreviousSession() {
    if (!platform::fileExists(sessionMarkerFile())) {
        return;
    }
    const auto start = platform::readFile(sessionMarkerFile(), mostBytesRead);
    if (start && platform::isValidUtf8(*start)) {
        file("⚠️ Previous session (started " + *start + ") ended abnormally");
    } else {
        file("⚠️ Previous session ended abnormally");
    }
    removeSessionMarker();
}

} // namespace kovra
