"""The host's end of a command in the guest: forwards its streams, its signals and its exit status."""

import fcntl
import json
import os
import selectors
import signal
import struct
import termios
import tty

from launcher.practice import FACTOR_VARIABLE

from . import frames

# What the guest has of its own, or cannot reach.
LEFT_OUT = ("DISPLAY", "XAUTHORITY", "WAYLAND_DISPLAY", "TMPDIR", "XDG_RUNTIME_DIR", "HOME",
            "LD_PRELOAD")

# The guest's own folder for temporary files.
TEMPORARY = "/run/temporary"

# The terminal's signals are for the command. Whatever else ends this process ends the command.
PASSED_ON = (signal.SIGINT, signal.SIGQUIT)


class KernelEnded(Exception):
    """The kernel ended in the middle of a command."""


def order_of(arguments, writable, factor):
    """What ORDER carries, for a command of this process's own folder, environment and terminal."""
    environment = {key: value for key, value in os.environ.items() if key not in LEFT_OUT}
    environment |= {"HOME": "/root", "TMPDIR": TEMPORARY, FACTOR_VARIABLE: str(factor)}
    terminal = None
    if os.isatty(0) and os.isatty(1):
        terminal = {"size": _terminal_size(), "errors": os.isatty(2)}
    return {"arguments": arguments, "folder": os.getcwd(), "environment": environment,
            "writable": [str(folder) for folder in writable], "terminal": terminal}


class Conversation:
    """One command over one line: a socket and its reader."""

    def __init__(self, line, reader):
        self._line = line
        self._reader = reader
        self._allowed = frames.UNDER_WAY
        self._input_open = True
        # A file cannot be waited for, and need not be.
        self._input_is_file = False
        self._output_open = True
        self._status = None

    def run(self, order):
        """Runs it to its end and gives its exit status, -N for a signal N."""
        self._send_order(json.dumps(order).encode())
        before = termios.tcgetattr(0) if order["terminal"] else None
        if before:
            tty.setraw(0)
        try:
            with _Signals() as signals, selectors.DefaultSelector() as self._selector:
                self._selector.register(self._line, selectors.EVENT_READ)
                self._selector.register(signals.descriptor, selectors.EVENT_READ)
                while self._status is None:
                    self._step(signals)
        finally:
            if before:
                termios.tcsetattr(0, termios.TCSADRAIN, before)
        return self._status if self._output_open else -signal.SIGPIPE

    def _send_order(self, order):
        while order:
            piece, order = order[:self._allowed], order[self._allowed:]
            self._allowed -= len(piece)
            self._send(frames.ORDER, piece)
            while self._allowed == 0:
                self._receive()
        self._send(frames.START)

    def _step(self, signals):
        wanted = self._input_open and self._allowed > 0
        if not self._input_is_file and wanted != (0 in self._selector.get_map()):
            if wanted:
                self._watch_input()
            else:
                self._selector.unregister(0)
        from_file = self._input_is_file and wanted
        for key, _ in self._selector.select(0 if from_file else None):
            if key.fd == signals.descriptor:
                for number in signals.take():
                    self._pass_on(number)
            elif key.fd == 0:
                self._read_input()
            else:
                self._receive()
        if from_file:
            self._read_input()

    def _watch_input(self):
        try:
            self._selector.register(0, selectors.EVENT_READ)
        except PermissionError:
            self._input_is_file = True
        except OSError:  # closed
            self._end_input()

    def _read_input(self):
        try:
            data = os.read(0, self._allowed)
        except OSError:
            data = b""
        if data:
            self._allowed -= len(data)
            self._send(frames.INPUT, data)
        else:
            self._end_input()

    def _end_input(self):
        self._input_open = False
        self._send(frames.INPUT)

    def _receive(self):
        try:
            data = self._line.recv(frames.CHUNK)
        except ConnectionError:
            data = b""
        if not data:
            raise KernelEnded
        for kind, content in self._reader.feed(data):
            if kind == frames.OUTPUT:
                self._write(1, content)
            elif kind == frames.ERROR:
                self._write(2, content)
            elif kind == frames.TAKEN:
                self._allowed += frames.as_numbers(content)[0]
            elif kind == frames.ENDED:
                self._status = frames.as_numbers(content)[0]

    def _write(self, stream, content):
        try:
            while content and self._output_open:
                content = content[os.write(stream, content):]
        except BrokenPipeError:
            # The reader is gone; the command in the guest gets no SIGPIPE.
            self._output_open = False
            self._send(frames.ABORT)

    def _pass_on(self, number):
        if number == signal.SIGWINCH:
            if os.isatty(0):
                self._send(frames.SIZE, frames.numbers(*_terminal_size()))
        else:
            self._send(frames.SIGNAL, frames.numbers(number))

    def _send(self, kind, content=b""):
        self._line.sendall(frames.frame(kind, content))


class _Signals:
    """Signals that come while a command runs, as bytes to be read."""

    def __enter__(self):
        self.descriptor, self._writer = os.pipe()
        for end in (self.descriptor, self._writer):
            os.set_blocking(end, False)
        self._before = {number: signal.signal(number, lambda *_: None)
                        for number in (*PASSED_ON, signal.SIGWINCH)}
        self._wakeup = signal.set_wakeup_fd(self._writer)
        return self

    def __exit__(self, *_):
        signal.set_wakeup_fd(self._wakeup)
        for number, handler in self._before.items():
            signal.signal(number, handler)
        os.close(self.descriptor)
        os.close(self._writer)

    def take(self):
        return list(os.read(self.descriptor, 64))


def _terminal_size():
    """Rows and columns."""
    rows, columns, _, _ = struct.unpack("HHHH", fcntl.ioctl(0, termios.TIOCGWINSZ, bytes(8)))
    return rows, columns
