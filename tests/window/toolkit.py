"""What a person has told the toolkit about his desktop."""

import plistlib

from whole import HOME


def settings(**values):
    """A script that writes these into the settings of all of the toolkit's programs."""
    place = f"{HOME}/GNUstep/Defaults"
    text = plistlib.dumps(values).decode()
    return (f"mkdir -p {place}; cat > {place}/NSGlobalDomain.plist <<'END'\n{text}\nEND\n"
            f"chown -R 501 {HOME}/GNUstep")
