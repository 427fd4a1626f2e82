#include "practice-mac/stand-ins/Transcript.hpp"

#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/Files.hpp"

#include <array>
#include <ctime>
#include <string_view>
#include <unistd.h>

namespace practice {

namespace {

/// Bytes beyond ASCII stay as they are, so a reader must be ready for some that are no UTF-8.
std::string quoted(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string json = "\"";
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (byte == '"' || byte == '\\') {
            json += '\\';
            json += byte;
        } else if (value < 0x20 || value == 0x7f) {
            json += "\\u00";
            json += digits[value >> 4];
            json += digits[value & 15];
        } else {
            json += byte;
        }
    }
    return json + '"';
}

std::string list(const std::vector<std::string>& words) {
    std::string json = "[";
    for (const std::string& word : words) {
        json += (json.size() == 1 ? "" : ",") + quoted(word);
    }
    return json + ']';
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string encoded;
    for (size_t index = 0; index < bytes.size(); index += 3) {
        std::array<unsigned, 3> group{};
        const size_t count = std::min<size_t>(3, bytes.size() - index);
        for (size_t place = 0; place < count; ++place) {
            group[place] = static_cast<unsigned char>(bytes[index + place]);
        }
        const unsigned value = group[0] << 16 | group[1] << 8 | group[2];
        encoded += alphabet[value >> 18];
        encoded += alphabet[value >> 12 & 63];
        encoded += count > 1 ? alphabet[value >> 6 & 63] : '=';
        encoded += count > 2 ? alphabet[value & 63] : '=';
    }
    return encoded;
}

} // namespace

long long monotonicNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

void record(const Invocation& call, const Outcome& outcome) {
    std::string line = "{\"tool\":" + quoted(call.path) + ",\"argv\":" + list(call.arguments);
    line += ",\"environment\":" + list(call.environment);
    line += ",\"folder\":" + (call.folder ? quoted(*call.folder) : "null");
    line += ",\"stdin\":" + (call.input ? '"' + base64(*call.input) + '"' : "null");
    line += ",\"status\":" + std::to_string(outcome.status);
    line += ",\"signal\":" + std::to_string(outcome.signal);
    line += ",\"uid\":" + std::to_string(getuid());
    line += ",\"pid\":" + std::to_string(getpid());
    line += ",\"started\":" + std::to_string(call.started);
    line += ",\"ended\":" + std::to_string(monotonicNow()) + "}\n";
    appendToFile(controlFolder + "/transcript", line);
}

} // namespace practice
