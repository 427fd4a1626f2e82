"""The command line of the launcher."""

import argparse
import json
import shutil
import sys
from pathlib import Path

from kernel import inside

from . import scenario as scenarios
from . import transcript
from .changes import Changes, copy_upper
from .faults import FaultError, parse
from .machine import Machine, Order
from .root import CannotBoot, Root, refusal
from .tools import TOOLS

CHECKOUT = Path(__file__).resolve().parent.parent.parent
CANNOT_BOOT = 125


def main(arguments):
    options = _parser().parse_args(arguments)
    try:
        return options.do(options, arguments)
    except (CannotBoot, FaultError, scenarios.ScenarioError) as error:
        print(f"practice-mac: {error}", file=sys.stderr)
        return CANNOT_BOOT


def _parser():
    parser = argparse.ArgumentParser(prog="practice-mac", description="A Mac to practise on: "
                                     "nothing done in it touches this machine.")
    actions = parser.add_subparsers(required=True, metavar="ACTION")
    run = actions.add_parser("run", help="run a command as the Mac's user")
    run.set_defaults(do=_run)
    shell = actions.add_parser("shell", help="look around in a scenario")
    shell.set_defaults(do=_run, command=["/bin/bash", "-i"])
    for action in (run, shell):
        _add_options(action)
    run.add_argument("command", nargs="+", metavar="-- COMMAND")
    actions.add_parser("list", help="name the scenarios").set_defaults(do=_list)
    return parser


def _add_options(parser):
    add = parser.add_argument
    add("scenario", help="a scenario's name, or a .toml file")
    add("--bundle", type=Path, help="the uninstaller to install in ~/Downloads "
        "(default: kovraUninstaller.app of the build tree, if there is one)")
    add("--build", type=Path, default=CHECKOUT / "build/linux", help="the build tree")
    add("--fault", action="append", default=[], metavar="TOOL [ARGUMENT...]=KIND[:VALUE][*TIMES]")
    add("--before", "--root-before", action="append", default=[], metavar="SCRIPT",
        help="a shell script that root runs first; what it does becomes part of the scenario")
    add("--env", action="append", default=[], metavar="NAME=VALUE")
    add("--answer", action="append", default=[], choices=("grant", "cancel", "person"),
        help="answers to the password prompt, in turn, in place of the scenario's; person: a "
        "dialog on the display asks whoever sits there")
    add("--as-root", action="store_true", help="run the command as root")
    add("--list-changes", action="store_true", help="name on standard error what the run changed")
    add("--report", type=Path, metavar="FILE", help="the same as JSON")
    add("--upper-copy", type=Path, metavar="FOLDER", help="keep a copy of the upper layer")
    add("--transcript", type=Path, metavar="FILE", help="every tool run, as lines of JSON")
    add("--syslog", type=Path, metavar="FILE", help="what was sent to the system's log")


def _list(_options, _arguments):
    for name in scenarios.names():
        print(f"{name:20} {scenarios.load(name).title}")
    return 0


def _run(options, arguments):
    reason = refusal()
    if reason is not None:
        return _run_in_kernel(reason, options, arguments)
    order = _order(options)
    for output in (options.report, options.transcript, options.syslog):
        if output is not None:
            output.write_bytes(b"")
    machine = Machine(Root(), order)
    status = machine.run()
    _report(machine, options)
    return status


def _run_in_kernel(reason, options, arguments):
    """Runs this same command line where namespaces can be had."""
    outputs = [output.parent for output in (options.report, options.transcript, options.syslog)
               if output is not None]
    outputs += [options.upper_copy] if options.upper_copy is not None else []
    program = str(CHECKOUT / "practice-mac/practice-mac")
    inside.leave_tidily()
    status = inside.run(reason, options.build.resolve(), [program, *arguments],
                        sorted({output.resolve() for output in outputs}))
    return 128 - status if status < 0 else status


def _order(options):
    build = options.build.resolve()
    bundle = options.bundle
    if bundle is None and (build / "kovraUninstaller.app").is_dir():
        bundle = build / "kovraUninstaller.app"
    elif bundle is not None and not bundle.is_dir():
        raise CannotBoot(f"there is no uninstaller at {bundle}")
    environment = dict(entry.partition("=")[::2] for entry in options.env)
    return Order(scenarios.load(options.scenario), options.command, CHECKOUT, build, bundle,
                 options.before, [parse(text, TOOLS) for text in options.fault], environment,
                 options.as_root, options.answer)


def _report(machine, options):
    if options.transcript is not None:
        transcript.write(transcript.read(machine.control("transcript")), options.transcript)
    if options.syslog is not None:
        shutil.copyfile(machine.control("syslog"), options.syslog)
    if options.report is not None or options.list_changes:
        changes = Changes(machine.root.written, machine.root.before())
        if options.report is not None:
            options.report.write_text(json.dumps(changes.as_json(), indent=1))
        if options.list_changes:
            sys.stderr.write(changes.text())
    if options.upper_copy is not None:
        copy_upper(machine.root.written, options.upper_copy)
