#!/bin/sh
# Removes the parts of kovra that only an administrator may remove. The uninstaller runs it as
# root, through the system's password dialog; what it names is what the scan marks as needing an
# administrator. A link goes as a link. Says on standard error what is still there, and fails then.

# A shell reads its script as it goes. All of this is one command, which ends in an exit, so that
# the shell has read the last line before it runs the first: what is written over the script
# meanwhile is never run.
{
    set -eu
    PATH=/usr/bin:/bin:/usr/sbin:/sbin
    IFS=' 	
'
    LC_ALL=C
    export PATH LC_ALL
    set +f
    umask 022
    cd /

    if [ "$(/usr/bin/id -u)" != 0 ]; then
        echo "kovra: only root may remove kovra for all users." >&2
        exit 1
    fi

    # Every path is written out, so that no mistake elsewhere can change what is removed. What
    # fails here is found below.
    /bin/rm -rf -- "/Applications/kovra.app" 2>/dev/null || :
    /bin/rm -rf -- "/Applications/KovraAgent.app" 2>/dev/null || :
    /bin/rm -rf -- "/Library/Input Methods/"kovraInput*.app 2>/dev/null || :
    # This one anybody may fill, with a volume too: a volume is not entered. By its name alone,
    # since older finds remove nothing by a path.
    (cd "/tmp" && /usr/bin/find kovra -xdev -depth -delete) 2>/dev/null || :

    status=0
    for path in "/Applications/kovra.app" "/Applications/KovraAgent.app" \
        "/Library/Input Methods/"kovraInput*.app "/tmp/kovra"; do
        if [ -e "$path" ] || [ -L "$path" ]; then
            status=1
        fi
    done
    if [ "$status" != 0 ]; then
        echo "kovra: some parts could not be removed from the system's folders." >&2
    fi
    exit "$status"
}
