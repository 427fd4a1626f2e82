"""The user of a practice Mac and his folders."""

import pwd
from dataclasses import dataclass, field

from .layer import STAFF
from .tools import STATE

USER_ID = 501


@dataclass
class Places:
    name: str
    folders: str
    others: dict[str, int] = field(default_factory=dict)

    @classmethod
    def of(cls, scenario):
        mac = scenario.table("mac")
        others = {name: USER_ID + 1 + index
                  for index, name in enumerate(scenario.list("users"))}
        return cls(mac.get("user", "sam"), mac["folders"], others)

    @property
    def home(self):
        return f"/Users/{self.name}"

    @property
    def temporary(self):
        """The temporary folder, ending in a slash as the Mac gives it."""
        return f"{self.folders}/T/"

    @property
    def cache(self):
        return f"{self.folders}/C/"

    @property
    def owners(self):
        """Whose each tree is. The tools rewrite their state as the user."""
        homes = {f"/Users/{name}": number for name, number in self.others.items()}
        return {self.home: USER_ID, self.folders: USER_ID, STATE: USER_ID, **homes}

    def path(self, text):
        """A scenario's path: ~ is the home folder, {temporary} and {cache} end in a slash."""
        if text == "~" or text.startswith("~/"):
            text = self.home + text[1:]
        return text.replace("{temporary}", self.temporary).replace("{cache}", self.cache)

    def accounts(self):
        """The text of /etc/passwd: the host's accounts with the Mac's users in place."""
        users = {self.name: USER_ID, **self.others}
        lines = [":".join((entry.pw_name, entry.pw_passwd, str(entry.pw_uid), str(entry.pw_gid),
                           entry.pw_gecos, entry.pw_dir, entry.pw_shell))
                 for entry in pwd.getpwall()
                 if entry.pw_uid not in users.values() and entry.pw_name not in users]
        lines += [f"{name}:x:{number}:{STAFF}:{name.title()}:/Users/{name}:/bin/bash"
                  for name, number in users.items()]
        return "".join(f"{line}\n" for line in lines).encode()
