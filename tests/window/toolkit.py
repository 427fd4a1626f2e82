"""Settings of the toolkit on a practice Mac, as a person may have made them."""

import plistlib

from whole import HOME


def settings(**values):
    """A script that writes these into GNUstep's settings for all programs."""
    place = f"{HOME}/GNUstep/Defaults"
    text = plistlib.dumps(values).decode()
    return (f"mkdir -p {place}; cat > {place}/NSGlobalDomain.plist <<'END'\n{text}\nEND\n"
            f"chown -R 501 {HOME}/GNUstep")
