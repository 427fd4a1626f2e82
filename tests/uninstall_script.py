"""What the tests of the script that root runs share."""

from support import CHECKOUT, PracticeMac, replace

SCRIPT = CHECKOUT / "resources/uninstall.sh"
BASH = ("/bin/bash",)
SHELLS = (BASH, ("/bin/bash", "--posix"), ("/bin/dash",), ("/bin/busybox", "sh"), ("/bin/sh",))

# The -samefile of a Mac's find compares inode numbers alone, whatever the devices.
BY_NUMBER = replace("/usr/bin/find", """words=()
while [ $# != 0 ]; do
    if [ "$1" = -samefile ]; then
        words+=(-inum "$(stat -c %i "$2")")
        shift
    else
        words+=("$1")
    fi
    shift
done
exec /usr/bin/find.real "${words[@]}\"""")
# Each puts a find in the place of the Mac's.
FINDS = {"GNU": ":", "GNU, by number": BY_NUMBER,
         **{find: f"ln -sf $(command -v {find}) /usr/bin/find"
            for find in ("busybox", "toybox", "bfs")}}
WORLDS = [(shell, FINDS["GNU"]) for shell in SHELLS] + [(BASH, find) for find in FINDS.values()]
# As on a Mac.
LINKED_TMP = "mkdir /private; cp -a /tmp /private; rm -r /tmp; ln -s private/tmp /tmp"


def run(scenario, shell, *before, as_root=True, environment=None):
    return PracticeMac(scenario).run([*shell, SCRIPT], as_root=as_root, before=before,
                                     environment=environment)


def run_after(prepare, shell=BASH, *before, look=":", scenario="installed", environment=None):
    """Root runs `prepare` (such as mounts, which last for one run only), then the script, then `look`,
    whose output is the standard output."""
    whole = f'set -e\n{prepare}\nset +e\n"$@"\nstatus=$?\n{look}\nexit "$status"'
    return PracticeMac(scenario).run(["/bin/bash", "-c", whole, "bash", *shell, SCRIPT],
                                     as_root=True, before=before, environment=environment)
