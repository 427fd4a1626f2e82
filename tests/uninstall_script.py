"""What the tests of the script that root runs share."""

from support import CHECKOUT, PracticeMac

SCRIPT = CHECKOUT / "resources/uninstall.sh"
BASH = ("/bin/bash",)
SHELLS = (BASH, ("/bin/bash", "--posix"), ("/bin/dash",), ("/bin/busybox", "sh"), ("/bin/sh",))


def replace(tool, script):
    """A tool made a script of, with the real one beside it under the name ending in .real."""
    return (f"mv {tool} {tool}.real\ncat > {tool} <<'END'\n#!/bin/bash\n{script}\nEND\n"
            f"chmod 755 {tool}")


# A Mac's find takes files for the same by their numbers alone, whatever volumes they are on.
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
    """Root prepares what lasts for one run only, as a mounted volume does, runs the script, and
    looks. Standard output is what the looking gave."""
    whole = f'set -e\n{prepare}\nset +e\n"$@"\nstatus=$?\n{look}\nexit "$status"'
    return PracticeMac(scenario).run(["/bin/bash", "-c", whole, "bash", *shell, SCRIPT],
                                     as_root=True, before=before, environment=environment)
