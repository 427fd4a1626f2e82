"""One kernel for many commands, which reach it by a socket."""

import os
import queue
import selectors
import socket
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

from launcher.practice import FACTOR_VARIABLE

from . import frames
from .boot import Kernel

# The socket, for those who are to use it.
SOCKET = "PRACTICE_MAC_KERNEL"

LINES = 8


def keep(build, command, say):
    """Boots a kernel, runs the command on this machine with the kernel at hand, and gives the
    command's exit status."""
    with (Kernel(build, LINES, say) as kernel, tempfile.TemporaryDirectory() as folder,
          socket.socket(socket.AF_UNIX) as listening):
        place = Path(folder) / "commands"
        listening.bind(str(place))
        listening.listen()
        free = queue.Queue()
        for line in kernel.lines:
            free.put(line)
        threading.Thread(target=_accept, args=(listening, free), daemon=True).start()
        print(f"practice-mac: limits of time are {kernel.factor} times as long there",
              file=sys.stderr, flush=True)
        environment = {**os.environ, SOCKET: str(place), FACTOR_VARIABLE: str(kernel.factor)}
        with subprocess.Popen(command, env=environment) as process:
            try:
                return process.wait()
            except BaseException:
                process.terminate()
                raise


def _accept(listening, free):
    while True:
        try:
            client, _ = listening.accept()
        except OSError:
            return
        threading.Thread(target=_serve, args=(client, free), daemon=True).start()


def _serve(client, free):
    """Carries one command's frames to a line and back. A line is free again when the command has
    ended, even when its caller has gone in the middle of it."""
    line, from_line = free.get()
    from_client = frames.Reader()
    running = False
    with client, selectors.DefaultSelector() as selector:
        selector.register(client, selectors.EVENT_READ)
        selector.register(line, selectors.EVENT_READ)
        gone = False
        while running or not gone:
            for key, _ in selector.select():
                source = key.fileobj
                data = _received(source)
                if source is line:
                    if not data:
                        return
                    for kind, content in from_line.feed(data):
                        gone = gone or not _sent(client, frames.frame(kind, content))
                        if kind == frames.ENDED:
                            running, gone = False, True
                elif data:
                    for kind, content in from_client.feed(data):
                        running = running or kind == frames.ORDER
                        line.sendall(frames.frame(kind, content))
                else:
                    selector.unregister(client)
                    gone = True
                    if running:
                        line.sendall(frames.frame(frames.ABORT))
    free.put((line, from_line))


def _received(source):
    try:
        return source.recv(frames.CHUNK)
    except ConnectionError:
        return b""


def _sent(client, data):
    try:
        client.sendall(data)
    except OSError:
        return False
    return True
