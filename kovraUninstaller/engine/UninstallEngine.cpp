#include "kovraUninstaller/engine/UninstallEngine.hpp"

#include "kovraUninstaller/logging/UninstallerLog.hpp"

namespace kovra {

void StepReport::add(const std::string& sentence, const std::string& reason) {
    const std::string behind = reason.empty() ? "" : " (" + reason + ")";
    UninstallerLog::file("  " + area + ": " + sentence + behind);
    sentences.push_back(sentence);
}

} // namespace kovra
