#include "kovraUninstaller/engine/UninstallEngine.hpp"

#include "kovraUninstaller/logging/UninstallerLog.hpp"

namespace kovra {

void StepReport::add(const std::string& sentence, const std::string& reason) {
    const std::string behind = reason.empty() ? "" : " (" + reason + ")";
    UninstallerLog::file("  " + area_ + ": " + sentence + behind);
    sentences_.push_back(sentence);
}

} // namespace kovra
