"""Environments to start the program with, and which of their variables it may pass on."""

import os

from catalogue import HOME, TEMPORARY
from support import IS_MAC

# Variables that change what a shell, the dynamic linker or an interpreter does, in every spelling.
HOSTILE = {
    "BASH_ENV": "/tmp/orders", "ENV": "/tmp/orders", "SHELLOPTS": "xtrace", "BASHOPTS": "extdebug",
    "PS4": "$(touch /Library/trace)", "IFS": "/n", "CDPATH": "/tmp", "GLOBIGNORE": "*kovra*",
    "POSIXLY_CORRECT": "1", "BASH_FUNC_umask%%": "() { touch /Library/trace; }",
    "BASH_FUNC_umask()": "() { touch /Library/trace; }", "umask": "() { touch /Library/trace; }",
    "DYLD_INSERT_LIBRARIES": "/tmp/orders", "DYLD_LIBRARY_PATH": "/tmp",
    "DYLD_PRINT_TO_FILE": "/tmp/orders", "LD_LIBRARY_PATH": "/nowhere", "LD_BIND_NOW": "1",
    "LD_AUDIT": "", "PERL5LIB": "/tmp", "PYTHONPATH": "/tmp", "NLSPATH": "/tmp/%N",
    "PATH": "/tmp:/usr/bin:/bin", "OLDPWD": "/tmp", "PWD": "/tmp", "SHLVL": "7", "_": "/tmp/orders",
    "LC_MESSAGES": "/tmp/orders", "LC_CTYPE": "../../../tmp/orders", "LC_TIME": "() { :; }",
    "LC_x%%": "C", "XPC_FLAGS": "a\nb",
    "SECURITYSESSIONID": "() { :; }", "GNUSTEP_x%%": "1", "COMMAND_MODE": "\x1b[2J",
}

# Variables that are passed on unchanged. None has its default value.
HARMLESS = {
    "HOME": HOME, "USER": "sam", "LOGNAME": "sam", "SHELL": "/bin/zsh", "TMPDIR": f"{TEMPORARY}/",
    "LANG": "C.UTF-8", "LC_ALL": "C.UTF-8", "LC_NUMERIC": "sr_RS.UTF-8@latin",
    "TZ": "Pacific/Chatham", "__CF_USER_TEXT_ENCODING": "0x1F5:0x0:0x3",
    "__CFBundleIdentifier": "ai.kovra.KovraUninstaller", "LaunchInstanceID": "0B2A5B35-6A2C",
    "XPC_SERVICE_NAME": "application.ai.kovra.1", "MallocNanoZone": "0",
}
# Linux's program also hands on what its toolkit, sanitizers and counting need; the Mac's knows none
# of it.
ON_LINUX = {
    "DISPLAY": os.environ.get("DISPLAY", ":99"), "GNUSTEP_STRING_ENCODING": "NSUTF8StringEncoding",
    "MSAN_OPTIONS": "a=1", "MSAN_SYMBOLIZER_PATH": "/usr/bin/llvm-symbolizer",
}
if IS_MAC:
    HOSTILE |= ON_LINUX
else:
    HARMLESS |= ON_LINUX
# Variables that are always there.
FIXED = ["PATH=/usr/bin:/bin:/usr/sbin:/sbin"]
# A program that is built for coverage adds this one itself.
COUNTED = "__LLVM_PROFILE_RT_INIT_ONCE=__LLVM_PROFILE_RT_INIT_ONCE"


def of_the_tests(name):
    """Whether the launcher hands that variable of the tests' own on, for sanitizers and coverage."""
    return name.endswith("SAN_OPTIONS") or name == "LLVM_PROFILE_FILE"


def handed_on(given=HARMLESS):
    """The entries that tools and root must find, sorted, of a program that was given these."""
    entries = {name: value for name, value in os.environ.items() if of_the_tests(name)} | given
    if IS_MAC:
        entries = {name: value for name, value in entries.items()
                   if name not in ON_LINUX and not of_the_tests(name)}
    return sorted([*FIXED, *(f"{name}={value}" for name, value in entries.items())])


def found(tool_run):
    """The entries that a tool run found, sorted."""
    return sorted(entry for entry in tool_run.environment if entry != COUNTED)
