"""Which stand-ins there are, and where the Mac has them."""

LSREGISTER = ("/System/Library/Frameworks/CoreServices.framework/Frameworks/"
              "LaunchServices.framework/Support/lsregister")

TOOLS = (
    "/usr/bin/defaults",
    "/usr/bin/security",
    "/usr/bin/getconf",
    "/usr/bin/pkill",
    "/usr/bin/killall",
    "/bin/launchctl",
    "/usr/libexec/PlistBuddy",
    LSREGISTER,
    "/usr/bin/tccutil",
    "/usr/bin/osascript",
    "/usr/bin/xdg-open",
)

# The host's own programs that stand-ins of the same name run, and the packages that bring them.
REAL = {"pkill": "procps", "killall": "psmisc", "getconf": "libc-bin"}

# The practice Mac's own folder inside; a Mac has nothing there.
OWN_FOLDER = "/usr/libexec/practice-mac"
LAUNCHD = f"{OWN_FOLDER}/launchd"
CONTROL = "/dev/practice-mac"
STATE = "/var/db/practice-mac"

# The build tree's programs: all stand-ins in one, and the one that waits until it is killed.
TOOLS_PROGRAM = "practice_mac_tools"
PROCESS_PROGRAM = "practice_mac_process"
