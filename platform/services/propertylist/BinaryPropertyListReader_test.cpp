#include "platform/services/propertylist/PropertyListForms.hpp"
#include "platform/testing/Python.hpp"
#include "platform/testing/SamplePropertyList.hpp"

#include <gmock/gmock.h>

#include <cstring>
#include <random>

namespace platform::propertylist {
namespace {

using namespace std::string_literals;
using Value = PropertyListValue;

std::string bigEndian(std::uint64_t number, int size) {
    std::string bytes;
    for (int i = size - 1; i >= 0; --i) {
        bytes += static_cast<char>(number >> (8U * static_cast<unsigned>(i)));
    }
    return bytes;
}

// A list of these objects, the first of them the root; references take one byte.
std::string listOf(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(bytes.size(), 4);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    return bytes + offsets + std::string(6, '\0') + "\4\1" + bigEndian(objects.size(), 8) +
           bigEndian(0, 8) + bigEndian(table, 8);
}

std::string inPythonsBinaryForm(const Value& value) {
    return testing::python(
        "import plistlib, sys\n"
        "value = plistlib.loads(sys.stdin.buffer.read())\n"
        "sys.stdout.buffer.write(plistlib.dumps(value, fmt=plistlib.FMT_BINARY))\n",
        writeXml(value).value());
}

TEST(BinaryPropertyListReader, ReadsEveryTypeAsAnotherWriterWroteIt) {
    EXPECT_EQ(readBinary(inPythonsBinaryForm(testing::samplePropertyList())),
              testing::samplePropertyList());
}

TEST(BinaryPropertyListReader, ReadsWhatTheCommandLineToolWrote) {
    const std::vector<std::string> arguments{"-c", "plistutil -f bin -i - -o -"};
    const std::string xml = writeXml(testing::samplePropertyList()).value();
    const auto ended = spawnAndWait({"/bin/sh", arguments, xml});
    ASSERT_EQ(ended.terminationStatus, 0) << ended.output;
    EXPECT_EQ(readBinary(ended.output), testing::samplePropertyList());
}

TEST(BinaryPropertyListReader, ReadsReferencesOfMoreThanOneByte) {
    Value::Array many;
    for (int i = 0; i < 70'000; ++i) {
        many.emplace_back("entry " + std::to_string(i));
    }
    EXPECT_TRUE(readBinary(inPythonsBinaryForm(many)) == Value(many));
}

TEST(BinaryPropertyListReader, ReadsNumbersOfEachWidth) {
    EXPECT_EQ(readBinary(listOf({"\x10\xFF"})), Value(255));
    EXPECT_EQ(readBinary(listOf({"\x11\xFF\xFF"})), Value(65535));
    EXPECT_EQ(readBinary(listOf({"\x12\xFF\xFF\xFF\xFF"})), Value(4294967295L));
    EXPECT_EQ(readBinary(listOf({"\x13" + bigEndian(~std::uint64_t{0}, 8)})), Value(-1));
    EXPECT_EQ(readBinary(listOf({"\x14" + bigEndian(0, 8) + bigEndian(~std::uint64_t{0}, 8)})),
              Value(~std::uint64_t{0}));
    EXPECT_EQ(readBinary(listOf({"\x14" + bigEndian(1, 8) + bigEndian(0, 8)})), std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\x22" + bigEndian(0x3F000000, 4)})), Value(0.5));
}

TEST(BinaryPropertyListReader, ReplacesUnpairedSurrogates) {
    EXPECT_EQ(readBinary(listOf({"\x62\xD8\x3C\xDF\x89"s})), Value("\U0001F389"));
    EXPECT_EQ(readBinary(listOf({"\x62\xD8\x3C\x00\x41"s})), Value("\uFFFD"
                                                                   "A"));
    EXPECT_EQ(readBinary(listOf({"\x61\xDF\x89"s})), Value("\uFFFD"));
    EXPECT_EQ(readBinary(listOf({"\x61\xD8\x3C"s})), Value("\uFFFD"));
}

TEST(BinaryPropertyListReader, GivesNothingForCycles) {
    EXPECT_EQ(readBinary(listOf({"\xA1\x00"s})), std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\xA1\x01"s, "\xA1\x00"s})), std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\xD1\x01\x00"s, "\x51k"})), std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\xD1\x00\x00"s})), std::nullopt);
}

TEST(BinaryPropertyListReader, GivesNothingForASmallListThatExpandsToAHugeOne) {
    std::vector<std::string> objects;
    for (char next = 1; next <= 60; ++next) {
        objects.push_back("\xAA" + std::string(10, next));
    }
    objects.emplace_back("\x51x");
    EXPECT_EQ(readBinary(listOf(objects)), std::nullopt);

    const std::string longText = "\x5F\x12" + bigEndian(1'000'000, 4) + std::string(1'000'000, 'x');
    const std::string manyNames = "\xAF\x12" + bigEndian(100'000, 4) + std::string(100'000, '\1');
    EXPECT_EQ(readBinary(listOf({manyNames, longText})), std::nullopt);
}

TEST(BinaryPropertyListReader, ReadsManyReferencesToOneObject) {
    const std::string names = "\xAF\x11" + bigEndian(1000, 2) + std::string(1000, '\1');
    EXPECT_EQ(readBinary(listOf({names, "\x55kovra"})), Value(Value::Array(1000, "kovra")));
}

TEST(BinaryPropertyListReader, GivesNothingForReferencesAndLengthsOutOfBounds) {
    EXPECT_EQ(readBinary(listOf({"\xA1\x07"s})), std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\x5F\x13" + bigEndian(~std::uint64_t{0}, 8)})), std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\x6F\x13" + bigEndian(std::uint64_t{1} << 63U, 8)})),
              std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\xAF\x13" + bigEndian(~std::uint64_t{0}, 8)})), std::nullopt);
    EXPECT_EQ(readBinary(listOf({"\xD1\x01\x00"s, "\x10\x05"})), std::nullopt);
    for (const std::uint64_t wrong : {std::uint64_t{1} << 40U, ~std::uint64_t{0}}) {
        std::string bytes = listOf({"\x51k"});
        for (const std::size_t field : {8UL, 16UL, 24UL}) {
            std::string spoiled = bytes;
            spoiled.replace(spoiled.size() - 32 + field, 8, bigEndian(wrong, 8));
            EXPECT_EQ(readBinary(spoiled), std::nullopt) << field;
        }
    }
}

TEST(BinaryPropertyListReader, GivesNothingForUnknownMarkers) {
    for (const unsigned marker : {0x00U, 0x01U, 0x0FU, 0x15U, 0x21U, 0x24U, 0x30U, 0x34U, 0x70U,
                                  0x8FU, 0x90U, 0xB0U, 0xC0U, 0xE0U, 0xF0U}) {
        EXPECT_EQ(readBinary(listOf({static_cast<char>(marker) + std::string(40, '\0')})),
                  std::nullopt)
            << marker;
    }
}

TEST(BinaryPropertyListReader, GivesNothingForAListCutAnywhere) {
    const std::string whole = inPythonsBinaryForm(testing::samplePropertyList());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(readBinary(std::string_view(whole).substr(0, length)), std::nullopt) << length;
    }
}

// Each byte is changed in turn: the result is nothing, or a value that can be compared.
TEST(BinaryPropertyListReader, SurvivesEveryCorruptByte) {
    const std::string whole = inPythonsBinaryForm(testing::samplePropertyList());
    std::size_t different = 0;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const unsigned change : {0x01U, 0x10U, 0x80U, 0xFFU}) {
            std::string spoiled = whole;
            spoiled[at] = static_cast<char>(static_cast<unsigned char>(spoiled[at]) ^ change);
            different += readBinary(spoiled) != Value(testing::samplePropertyList()) ? 1U : 0U;
        }
    }
    EXPECT_GT(different, whole.size());
}

TEST(BinaryPropertyListReader, GivesNothingForAHundredMegabytesOfRubbish) {
    std::string bytes(100'000'000, '\0');
    std::mt19937_64 random(20250314);
    for (std::size_t i = 0; i + 8 <= bytes.size(); i += 8) {
        const std::uint64_t word = random();
        std::memcpy(bytes.data() + i, &word, sizeof word);
    }
    EXPECT_EQ(readBinary(bytes), std::nullopt);
    bytes.replace(0, 8, "bplist00");
    EXPECT_EQ(readBinary(bytes), std::nullopt);
}

} // namespace
} // namespace platform::propertylist
