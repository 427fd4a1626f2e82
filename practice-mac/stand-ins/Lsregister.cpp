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

int registerBundle(plist_t registry, const std::string& path) {
    const Plist information = readPlist(path + "/Contents/Info.plist");
    if (!information) {
        std::cerr << "lsregister: failed to scan " << path << ": -10811\n";
        return 1;
    }
    plist_t record = plist_new_dict();
    plist_dict_set_item(record, "path", plist_new_string(path.c_str()));
    const std::string identifier = textAt(information.get(), "CFBundleIdentifier");
    plist_dict_set_item(record, "identifier", plist_new_string(identifier.c_str()));
    plist_array_append_item(itemAt(registry, "records"), record);
    writePlist(registryPath, registry);
    return 0;
}

} // namespace

int runLsregister(Invocation& call) {
    const std::vector<std::string>& words = call.arguments;
    const bool dumps = words.size() == 1 && words[0] == "-dump";
    const bool unregisters = words.size() == 2 && words[0] == "-u" && !words[1].empty();
    const bool registers = words.size() == 2 && words[0] == "-f" && !words[1].empty();
    if (!dumps && !unregisters && !registers) {
        return unknownRequest(call, "the arguments");
    }
    const Plist registry = readPlist(registryPath);
    if (!registry) {
        return unknownRequest(call, "a registry that cannot be read");
    }
    if (dumps) {
        return printLaunchServices(registry.get()) ? 0 : 1;
    }
    return registers ? registerBundle(registry.get(), words[1])
                     : unregister(registry.get(), words[1]);
}

} // namespace practice
