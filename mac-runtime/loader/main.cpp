// Runs a Mac's arm64 program:
//
//   mac-runtime PROGRAM NAME ARGUMENTS...
//
// NAME becomes the program's argv[0]. If the starter lists the program's environment
// (loader/Environment.hpp), the program gets that one, else this process's own.

#include "frameworks/Frameworks.hpp"
#include "loader/Environment.hpp"
#include "loader/Failure.hpp"
#include "loader/Program.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sys/prctl.h>
#include <syslog.h>

int main(int argc, char** argv) {
    if (argc < 3) {
        mac::fail("usage: mac-runtime PROGRAM NAME ARGUMENTS...");
    }
    const std::unique_ptr<char, decltype(&std::free)> path(::realpath(argv[1], nullptr),
                                                           &std::free);
    if (!path) {
        mac::fail("%s: %s", argv[1], std::strerror(errno));
    }
    mac::takeProgramEnvironment();
    mac::prepareFrameworks(path.get());
    mac::loadProgram(path.get());
    // The name that ps and the system log show.
    ::prctl(PR_SET_NAME, mac::program().name.c_str());
    ::openlog(mac::program().name.c_str(), 0, LOG_USER);
    mac::runProgram(argc - 2, argv + 2);
}
