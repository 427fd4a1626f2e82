"""A virtual X server with a window manager."""

import os
import subprocess
import time

from whole import time_limit


class Display:
    """A context manager; `environment` is for the programs that use the display."""

    def __init__(self, width=1280, height=1024):
        self.size = (width, height)

    def __enter__(self):
        reader, writer = os.pipe()
        geometry = "{}x{}x24".format(*self.size)
        # Without the Composite extension, covered parts of windows must be redrawn.
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", geometry, "-nolisten", "tcp",
             "-noreset", "-extension", "Composite"], pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as number:
            name = number.readline().strip()
        if not name:
            raise RuntimeError("Xvfb did not start")
        self.environment = {**os.environ, "DISPLAY": f":{name}"}
        self.environment.pop("XAUTHORITY", None)
        self._manager = subprocess.Popen(
            ["openbox"], env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._await_manager()
        return self

    def __exit__(self, *_):
        for process in (self._manager, self._server):
            process.terminate()
            process.wait()

    def output(self, *command):
        """Runs a command on this display; returns its output."""
        return subprocess.run([str(word) for word in command], env=self.environment, check=True,
                              capture_output=True, timeout=time_limit(60)).stdout

    def _await_manager(self):
        for _ in range(600):
            if b"_NET_SUPPORTING_WM_CHECK(WINDOW)" in self.output("xprop", "-root",
                                                                  "_NET_SUPPORTING_WM_CHECK"):
                return
            time.sleep(0.05)
        raise RuntimeError("openbox did not start")
