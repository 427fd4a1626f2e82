#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/LaunchServicesDump.hpp"

#include <iostream>

namespace practice {

namespace {

const std::string registryPath = stateFolder + "/launch-services.plist";

int unregister(plist_t registry, std::string path) {
    if (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    plist_t records = itemAt(registry, "records");
    bool removed = false;
    uint32_t index = 0;
    for (plist_t entry : elements(records)) {
        if (textAt(entry, "path") == path) {
            plist_array_remove_item(records, index);
            removed = true;
        } else {
            ++index;
        }
    }
    if (!removed) {
        std::cerr << "lsregister: failed to unregister " << path << ": -10814\n";
        return 1;
    }
    writePlist(registryPath, registry);
    return 0;
}

} // namespace

int runLsregister(Invocation& call) {
    const std::vector<std::string>& words = call.arguments;
    const bool dumps = words.size() == 1 && words[0] == "-dump";
    const bool unregisters = words.size() == 2 && words[0] == "-u" && !words[1].empty();
    if (!dumps && !unregisters) {
        return unknownRequest(call, "the arguments");
    }
    const Plist registry = readPlist(registryPath);
    if (!registry) {
        return unknownRequest(call, "a registry that cannot be read");
    }
    if (dumps) {
        return printLaunchServices(registry.get()) ? 0 : 1;
    }
    return unregister(registry.get(), words[1]);
}

} // namespace practice
