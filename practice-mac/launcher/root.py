"""What a practice Mac needs of the way in which its private root is made."""

from abc import ABC, abstractmethod
from pathlib import Path


class CannotBoot(Exception):
    """Something that a practice Mac needs is missing here; the text names it."""


class Root(ABC):
    """A private root over the host's. The calls come in the order of the methods.

    `setup` is the folder into which the scenario is written before the run; `control` becomes
    /dev/practice-mac inside, outside of what counts as written by the run.
    """

    setup: Path
    control: Path

    @abstractmethod
    def open(self):
        """Makes the empty layers; raises CannotBoot."""

    @abstractmethod
    def hide(self, path, mode):
        """Makes the folder at path empty inside, whatever the host has there."""

    @abstractmethod
    def remove(self, path):
        """Makes path absent inside."""

    @abstractmethod
    def run_in_setup(self, argv):
        """Runs argv as root inside; what it writes becomes part of the setup. Gives its status."""

    @abstractmethod
    def show(self, path, read_only=True):
        """Shows the host's path inside, at the same place."""

    @abstractmethod
    def assemble(self):
        """Puts the layers together: from here on the setup is closed."""

    @abstractmethod
    def boot(self, argv):
        """Runs argv as the first process inside and gives its exit status, -N for a signal."""

    @property
    @abstractmethod
    def written(self):
        """The layer that the run wrote, as a folder; absences are character devices 0:0."""

    @abstractmethod
    def before(self):
        """A folder that shows the root as it was before the run."""
