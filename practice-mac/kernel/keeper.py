"""In the guest: runs the commands that come over one serial line, one after the other."""

import fcntl
import json
import os
import pty
import selectors
import signal
import struct
import termios
import tty

from launcher import syscalls

from . import frames


class Keeper:
    def __init__(self, line):
        self._line = os.open(line, os.O_RDWR | os.O_NOCTTY)
        tty.setraw(self._line)
        os.set_blocking(self._line, False)
        self._reader = frames.Reader()
        self._arrived = []
        self._unsent = bytearray()

    def serve(self, ready):
        """Says that the line is open, then runs command after command. Does not return."""
        os.setsid()
        syscalls.adopt_orphans()
        self._unsent += ready
        order = b""
        while True:
            kind, content = self._await_frame()
            if kind == frames.ORDER:
                order += content
                self.send(frames.TAKEN, frames.numbers(len(content)))
            elif kind == frames.START:
                Command(self, json.loads(order)).keep()
                order = b""
            elif kind == frames.ABORT and order:
                self.send(frames.ENDED, frames.numbers(-signal.SIGKILL))
                order = b""

    # The line, whose other end may be slow: what is not sent yet waits, and who fills it asks first.

    @property
    def descriptor(self):
        return self._line

    @property
    def has_room(self):
        return len(self._unsent) < frames.WAITING

    @property
    def wanted_events(self):
        return selectors.EVENT_READ | (selectors.EVENT_WRITE if self._unsent else 0)

    def send(self, kind, content=b""):
        self._unsent += frames.frame(kind, content)
        self.flush()

    def flush(self):
        while self._unsent:
            try:
                sent = os.write(self._line, self._unsent[:frames.CHUNK])
            except BlockingIOError:
                return
            if sent == 0:
                return
            del self._unsent[:sent]

    def receive(self):
        """The frames that have come."""
        try:
            self._arrived += self._reader.feed(os.read(self._line, frames.CHUNK))
        except BlockingIOError:
            pass
        arrived, self._arrived = self._arrived, []
        return arrived

    def _await_frame(self):
        while True:
            self.flush()
            first, *self._arrived = self.receive() or [None]
            if first is not None:
                return first
            with selectors.DefaultSelector() as selector:
                selector.register(self._line, self.wanted_events)
                selector.select()


class Command:
    """One command: its process, its streams, its end."""

    def __init__(self, keeper, order):
        self._keeper = keeper
        self._order = order
        self._input = bytearray()
        self._input_ends = False
        self._terminal = None

    def keep(self):
        """Runs the command and tells the host all about it."""
        self._start()
        status = None
        with selectors.DefaultSelector() as self._selector:
            while status is None or self._outputs:
                self._obey_all()
                self._await(status is not None)
                if status is None:
                    status = self._ended()
                    if status is not None:
                        # Background processes of the command would hold its outputs open.
                        self._end_descendants()
        for descriptor in {self._into, *self._outputs} - {None}:
            os.close(descriptor)
        if self._order["writable"]:
            os.sync()
        self._keeper.send(frames.ENDED, frames.numbers(status))

    def _start(self):
        if self._order["terminal"]:
            self._start_on_terminal()
        else:
            self._start_on_pipes()
        for descriptor in {self._into, *self._outputs}:
            os.set_blocking(descriptor, False)

    def _start_on_pipes(self):
        inputs, outputs, errors = os.pipe(), os.pipe(), os.pipe()
        self._process = os.fork()
        if self._process == 0:
            self._become((inputs[0], outputs[1], errors[1]))
        for descriptor in (inputs[0], outputs[1], errors[1]):
            os.close(descriptor)
        self._into = inputs[1]
        self._outputs = {outputs[0]: frames.OUTPUT, errors[0]: frames.ERROR}

    def _start_on_terminal(self):
        master, slave = pty.openpty()
        errors = os.pipe() if not self._order["terminal"]["errors"] else None
        self._terminal = master
        self._resize(*self._order["terminal"]["size"])
        self._process = os.fork()
        if self._process == 0:
            os.setsid()
            fcntl.ioctl(slave, termios.TIOCSCTTY, 0)
            self._become((slave, slave, errors[1] if errors else slave))
        os.close(slave)
        self._into = master
        self._outputs = {master: frames.OUTPUT}
        if errors:
            os.close(errors[1])
            self._outputs[errors[0]] = frames.ERROR

    def _become(self, streams):
        """In the child: becomes the command. Does not return."""
        try:
            if not self._order["terminal"]:
                os.setpgid(0, 0)
            for number, descriptor in enumerate(streams):
                os.dup2(descriptor, number)
            self._show_writable()
            os.chdir(self._order["folder"])
            for number in (signal.SIGPIPE, signal.SIGXFSZ, signal.SIGINT):
                signal.signal(number, signal.SIG_DFL)
            os.closerange(3, 1024)
            os.execvpe(self._order["arguments"][0], self._order["arguments"],
                       self._order["environment"])
        except OSError as error:
            os.write(2, f"{self._order['arguments'][0]}: {error.strerror}\n".encode())
            os._exit(126 if isinstance(error, PermissionError) else 127)

    def _show_writable(self):
        """The host's folders that this command may write, at their own places."""
        if not self._order["writable"]:
            return
        syscalls.unshare(syscalls.CLONE_NEWNS)
        syscalls.mount(None, "/", flags=syscalls.MS_REC | syscalls.MS_PRIVATE)
        for folder in self._order["writable"]:
            syscalls.mount("none", folder, "hostfs", data=folder)

    # While it runs.

    def _await(self, ended):
        """Waits until there is something to hand on, and hands it on. After the end nothing new is
        awaited."""
        wanted = {self._keeper.descriptor: self._keeper.wanted_events}
        if self._keeper.has_room:
            wanted |= {descriptor: selectors.EVENT_READ for descriptor in self._outputs}
        if self._into is not None and self._input:
            wanted[self._into] = wanted.get(self._into, 0) | selectors.EVENT_WRITE
        watch = None
        if not ended:
            watch = os.pidfd_open(self._process)
            wanted[watch] = selectors.EVENT_READ
        for descriptor, events in wanted.items():
            self._selector.register(descriptor, events)
        happened = [(key.fd, events) for key, events in self._selector.select()]
        for descriptor in wanted:
            self._selector.unregister(descriptor)
        if watch is not None:
            os.close(watch)
        for descriptor, events in happened:
            if descriptor == self._keeper.descriptor:
                self._keeper.flush()
                self._obey_all()
            elif descriptor in self._outputs and events & selectors.EVENT_READ:
                self._hand_out(descriptor)
        self._hand_in()

    def _hand_out(self, descriptor):
        try:
            data = os.read(descriptor, frames.CHUNK)
        except BlockingIOError:
            return
        except OSError:  # a terminal that nobody holds open any more
            data = b""
        if data:
            self._keeper.send(self._outputs[descriptor], data)
        else:
            del self._outputs[descriptor]
            if descriptor != self._into:
                os.close(descriptor)

    def _hand_in(self):
        if self._into is None:
            return
        try:
            while self._input:
                written = os.write(self._into, self._input[:frames.CHUNK])
                del self._input[:written]
                self._keeper.send(frames.TAKEN, frames.numbers(written))
        except BlockingIOError:
            return
        except OSError:  # nobody reads it any more; what comes is taken and dropped
            self._keeper.send(frames.TAKEN, frames.numbers(len(self._input)))
            self._input.clear()
        if self._input_ends and not self._input and self._terminal is None:
            os.close(self._into)
            self._into = None

    def _obey_all(self):
        for kind, content in self._keeper.receive():
            self._obey(kind, content)

    def _obey(self, kind, content):
        if kind == frames.INPUT:
            self._input += content
            self._input_ends = self._input_ends or not content
            if self._into is None and content:
                self._keeper.send(frames.TAKEN, frames.numbers(len(content)))
                self._input.clear()
        elif kind == frames.SIGNAL:
            self._signal(frames.as_numbers(content)[0])
        elif kind == frames.SIZE and self._terminal is not None:
            self._resize(*frames.as_numbers(content))
        elif kind == frames.ABORT:
            self._end_descendants()

    def _signal(self, number):
        """A terminal's signal goes to the foreground process group."""
        target = -self._process if number in (signal.SIGINT, signal.SIGQUIT) else self._process
        try:
            os.kill(target, number)
        except ProcessLookupError:
            pass

    def _resize(self, rows, columns):
        size = struct.pack("HHHH", rows, columns, 0, 0)
        fcntl.ioctl(self._terminal, termios.TIOCSWINSZ, size)

    def _ended(self):
        """The exit status, -N for a signal; None while it runs. Others' ends are taken as well."""
        child, status = os.waitpid(self._process, os.WNOHANG)
        return os.waitstatus_to_exitcode(status) if child else None

    def _end_descendants(self):
        """Kills what the command is and has started; orphans come to this process."""
        while True:
            with open(f"/proc/self/task/{os.getpid()}/children", encoding="ascii") as listing:
                children = [int(word) for word in listing.read().split()]
            for child in children:
                os.kill(child, signal.SIGKILL)
            others = [child for child in children if child != self._process]
            if not others:
                return
            for child in others:
                os.waitpid(child, 0)
