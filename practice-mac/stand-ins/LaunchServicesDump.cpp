#include "practice-mac/stand-ins/LaunchServicesDump.hpp"

#include "practice-mac/stand-ins/Files.hpp"
#include "practice-mac/stand-ins/Plist.hpp"

#include <cstdio>
#include <unistd.h>

namespace practice {

namespace {

constexpr size_t keyWidth = 28;
constexpr size_t blockBytes = 1 << 20;
constexpr int preambleLines = 60;

std::string hexadecimal(unsigned number) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "0x%x", number);
    return buffer;
}

std::string field(const std::string& key, const std::string& value) {
    std::string line = key + ':';
    line.resize(std::max(keyWidth, line.size() + 1), ' ');
    return line + value + '\n';
}

std::string preamble() {
    std::string text = "Checking data integrity......done.\nStatus: Database is seeded.\n";
    for (int number = 1; number <= preambleLines; ++number) {
        text += field("Unit " + std::to_string(number), std::to_string(number * 7) + " units");
    }
    return text + field("Path", "/private/var/db/practice-mac/launch-services");
}

std::string separator() {
    return std::string(80, '-') + '\n';
}

/// A record of something else: a plug-in inside an application whose name holds spaces.
std::string fillerRecord(unsigned number) {
    const std::string name = "Bystander " + std::to_string(number);
    const std::string path =
        "/Applications/" + name + ".app/Contents/PlugIns/" + name + " Extension.appex";
    std::string text = separator();
    text += field("plugin Identifier", "com.example.bystander" + std::to_string(number));
    text += field("bundle id", name + " (" + hexadecimal(number) + ")");
    text += field("class", "kLSBundleClassPlugin (0x8)");
    text += field("container", "/ (0x4)");
    text += field("path", path + " (" + hexadecimal(number) + ")");
    text += field("identifier", "com.example.bystander" + std::to_string(number));
    text += field("version", "1." + std::to_string(number % 10));
    text += field("flags", "apple-internal  has-display-name  privileged (0000000000000045)");
    text += "plugin Info:                {\n        LSItemContentTypes =     (\n";
    for (unsigned line = 0; line < 20; ++line) {
        text += "            \"com.example.bystander.documents.imported-type-" +
                std::to_string(number + line) + ".with-a-long-name.package\",\n";
    }
    return text + "        );\n        path = \"" + path + "\";\n    }\n";
}

std::string record(plist_t entry, unsigned number) {
    const std::string path = textAt(entry, "path");
    const size_t slash = path.rfind('/');
    const std::string name = path.substr(slash + 1, path.rfind('.') - slash - 1);
    std::string text = separator();
    text += field("bundle id", name + " (" + hexadecimal(number) + ")");
    text += field("class", "kLSBundleClassApplication (0x2)");
    text += field("container", "/ (0x4)");
    text += field("mount state", "mounted");
    text += field("path", path + " (" + hexadecimal(number) + ")");
    text += field("directory", path.substr(0, slash));
    text += field("name", name);
    text += field("identifier", textAt(entry, "identifier"));
    text += field("type code", "'APPL'");
    return text +
           field("flags", "has-display-name  native-app  x86_64-optional (00000000000000c1)");
}

/// Collects text and writes it a block at a time.
class Output {
  public:
    void add(const std::string& text) {
        pending_ += text;
        total_ += text.size();
        if (pending_.size() >= blockBytes) {
            flush();
        }
    }

    bool flush() {
        good_ = good_ && writeAll(STDOUT_FILENO, pending_);
        pending_.clear();
        return good_;
    }

    bool isGood() const { return good_; }

    size_t bytes() const { return total_; }

  private:
    std::string pending_;
    size_t total_ = 0;
    bool good_ = true;
};

} // namespace

bool printLaunchServices(plist_t registry) {
    const std::vector<plist_t> records = elements(itemAt(registry, "records"));
    const auto filler = static_cast<size_t>(integerAt(registry, "filler_bytes"));
    Output output;
    output.add(preamble());
    // The records are spread evenly over the filler.
    unsigned number = 0x1000;
    for (size_t place = 0; place <= records.size(); ++place) {
        const size_t share = filler / (records.size() + 1) * (place + 1);
        while (output.isGood() && output.bytes() < share) {
            output.add(fillerRecord(++number));
        }
        if (place < records.size()) {
            output.add(record(records[place], ++number));
        }
    }
    output.add(separator());
    return output.flush();
}

} // namespace practice
