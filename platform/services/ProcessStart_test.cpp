#include "platform/services/ProcessStart.hpp"
#include "platform/testing/Environment.hpp"
#include "platform/testing/ForkedProcess.hpp"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace platform {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAreArray;
using Entries = std::vector<std::string>;

const char* const path = "PATH=/usr/bin:/bin:/usr/sbin:/sbin";

Entries reduced(Entries entries) {
    return testing::environmentAfter(reduceEnvironment, std::move(entries));
}

// Whether an entry is kept when it is the only one.
bool isKept(const std::string& entry) {
    const Entries left = reduced({entry});
    return left.size() == 2 && left.back() == entry;
}

TEST(ReducedEnvironment, KeepsListedVariablesUnchanged) {
    Entries entries{"HOME=/Users/sam",
                    "USER=sam",
                    "LOGNAME=sam",
                    "SHELL=/bin/zsh",
                    "TMPDIR=/var/folders/62/nrp34pc9/T/",
                    "LANG=de_DE.UTF-8",
                    "LC_ALL=sr_RS.UTF-8@latin",
                    "LC_CTYPE=UTF-8",
                    "TZ=Europe/Berlin",
                    "__CF_USER_TEXT_ENCODING=0x1F5:0x0:0x3",
                    "__CFBundleIdentifier=ai.kovra.KovraUninstaller",
                    "LaunchInstanceID=0B2A5B35-6A2C-4B4E-9D0B-5B0D6C4A3A11",
                    "SECURITYSESSIONID=186a6",
                    "XPC_SERVICE_NAME=application.ai.kovra.KovraUninstaller.1.2",
                    "XPC_FLAGS=0x0",
                    "COMMAND_MODE=unix2003",
                    "MallocNanoZone=0"};
    Entries expected = entries;
    expected.emplace_back(path);
    EXPECT_THAT(reduced(std::move(entries)), UnorderedElementsAreArray(expected));
}

TEST(ReducedEnvironment, DropsEveryOtherVariable) {
    for (const char* entry : {"BASH_ENV=/tmp/x",
                              "ENV=/tmp/x",
                              "SHELLOPTS=xtrace",
                              "BASHOPTS=extdebug",
                              "PS4=$(id)",
                              "IFS=/",
                              "CDPATH=/tmp",
                              "GLOBIGNORE=*",
                              "BASH_FUNC_id%%=() { :; }",
                              "BASH_FUNC_id()=x",
                              "id=() { :; }",
                              "DYLD_INSERT_LIBRARIES=/tmp/x",
                              "DYLD_PRINT_TO_FILE=/x",
                              "LD_PRELOAD=/x",
                              "LD_LIBRARY_PATH=/tmp",
                              "PERL5LIB=/tmp",
                              "PYTHONPATH=/tmp",
                              "CFFIXED_USER_HOME=/tmp",
                              "HOMES=/tmp",
                              "HOM=/tmp",
                              "home=/tmp",
                              "XHOME=/tmp",
                              "LANGUAGE=de",
                              "TZDIR=/tmp",
                              "LC=C",
                              "XPC_OTHER=1",
                              "MallocStackLogging=1",
                              "NLSPATH=/tmp/%N",
                              "LC_ALL%%=C",
                              "LC_ALL()=C",
                              "LC_ALL =C",
                              "HOME =/Users/sam",
                              "PWD=/tmp",
                              "OLDPWD=/tmp",
                              "_=/bin/sh",
                              "SHLVL=1"}) {
        EXPECT_THAT(reduced({entry}), ElementsAre(path)) << entry;
    }
}

TEST(ReducedEnvironment, SetsThePathWhateverItWas) {
    EXPECT_THAT(reduced({}), ElementsAre(path));
    EXPECT_THAT(reduced({"PATH=/tmp", "USER=sam", "PATH=/opt"}), ElementsAre(path, "USER=sam"));
}

TEST(ReducedEnvironment, KeepsTheFirstOfSeveralVariablesWithOneName) {
    EXPECT_THAT(reduced({"USER=sam", "HOME=/a", "USER=eve", "HOME=/b", "HOME=/a"}),
                ElementsAre(path, "USER=sam", "HOME=/a"));
    EXPECT_THAT(reduced({"HOME=() { :; }", "HOME=/b"}), ElementsAre(path));
}

TEST(ReducedEnvironment, DropsEntriesWithoutANameOrAValue) {
    EXPECT_THAT(reduced({"", "=", "=value", "==", "HOME", "LC_ALL", "x", "=HOME=/a"}),
                ElementsAre(path));
    EXPECT_TRUE(isKept("HOME="));
    EXPECT_TRUE(isKept("HOME=/a=b"));
}

TEST(ReducedEnvironment, DropsValuesThatAShellCouldTakeForAFunction) {
    for (const char* value : {"()", "() { :; }", "() {", "()x"}) {
        for (const char* name : {"HOME=", "USER=", "LANG=", "TZ=", "LC_ALL=", "XPC_FLAGS="}) {
            EXPECT_FALSE(isKept(std::string(name) + value)) << name << value;
        }
    }
    EXPECT_TRUE(isKept("HOME=/Users/a()"));
    EXPECT_TRUE(isKept("HOME=( )"));
}

TEST(ReducedEnvironment, DropsValuesWithControlCharacters) {
    for (int character = 1; character < 256; ++character) {
        const bool isControl = character < 0x20 || character == 0x7f;
        const std::string value = std::string("/a") + static_cast<char>(character) + "b";
        EXPECT_EQ(isKept("HOME=" + value), !isControl) << character;
    }
    EXPECT_TRUE(isKept("HOME=/Users/Jürgen 🎉"));
}

TEST(ReducedEnvironment, KeepsOnlyPlainNamesOfLocalesAndTimeZones) {
    const std::string allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                "._-+@/,";
    for (const char* name : {"LANG=", "LC_ALL=", "LC_CTYPE=", "LC_X=", "TZ="}) {
        for (int character = 1; character < 256; ++character) {
            const std::string value = std::string("a") + static_cast<char>(character);
            EXPECT_EQ(isKept(name + value), allowed.find(value[1]) != std::string::npos)
                << name << character;
        }
        EXPECT_FALSE(isKept(name + std::string("/etc/localtime"))) << name;
        EXPECT_TRUE(isKept(name)) << name;
        EXPECT_TRUE(isKept(name + std::string("Etc/GMT+5"))) << name;
    }
}

TEST(ReducedEnvironment, DropsLocalesAndZonesThatLeadOutOfTheSystemsFolder) {
    for (const std::string name : {"LANG=", "LC_ALL=", "LC_CTYPE=", "TZ="}) {
        for (const char* value : {"..", "../x", "../../../tmp/x", "de/../../../tmp/x", "a/.."}) {
            EXPECT_FALSE(isKept(name + value)) << name << value;
        }
        for (const char* value : {".", "a..b", "...", "..a/b..", "a/b"}) {
            EXPECT_TRUE(isKept(name + value)) << name << value;
        }
    }
    EXPECT_TRUE(isKept("HOME=/Users/../sam"));
}

bool isDevNull(int descriptor) {
    struct stat found{};
    struct stat devNull{};
    return ::fstat(descriptor, &found) == 0 && ::stat("/dev/null", &devNull) == 0 &&
           S_ISCHR(found.st_mode) && found.st_rdev == devNull.st_rdev;
}

TEST(StandardStreams, ClosedOnesAreOpenedAsDevNull) {
    for (unsigned closed = 0; closed < 8; ++closed) {
        EXPECT_TRUE(testing::holdsInForkedProcess([closed] {
            const auto isClosed = [closed](int descriptor) {
                return (closed >> static_cast<unsigned>(descriptor) & 1U) != 0;
            };
            int ends[2] = {};
            bool held = ::pipe(ends) == 0;
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                ::dup2(ends[0], descriptor);
            }
            const int next = ::open("/dev/null", O_RDONLY);
            ::close(next);
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                if (isClosed(descriptor)) {
                    ::close(descriptor);
                }
            }
            openMissingStandardStreams();
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                held = held && isDevNull(descriptor) == isClosed(descriptor) &&
                       ::fcntl(descriptor, F_GETFD) == 0;
            }
            return held && ::open("/dev/null", O_RDONLY) == next;
        })) << "closed: "
            << closed;
    }
}

} // namespace
} // namespace platform
