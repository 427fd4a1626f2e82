#!/bin/sh
# Removes the parts of kovra that only an administrator may remove. The uninstaller runs it as
# root, through the system's password dialog; what it names is what the scan marks as needing an
# administrator. A link goes as a link, and of a volume that is mounted in a folder, or in its
# place, no file is touched. Says on standard error what is still there, and fails then.

# A shell reads its script as it goes. All of this is one command, which ends in an exit, so that
# the shell has read the last line before it runs the first: what is written over the script
# meanwhile is never run.
{
    set -u
    PATH=/usr/bin:/bin:/usr/sbin:/sbin
    IFS=' 	
'
    LC_ALL=C
    export PATH LC_ALL
    # The shell may have been started with -e or -f: no error ends the script, patterns match names.
    set +ef
    umask 022
    cd / || exit 1

    if [ "$(/usr/bin/id -u)" != 0 ]; then
        echo "kovra: only root may remove kovra for all users." >&2
        exit 1
    fi

    # Changes to a folder. Succeeds only if the folder itself has the name, not a link to it, and if
    # find reaches its contents from the parent folder without leaving the volume. A Mac's find
    # compares inode numbers alone, which may be the same on two volumes, so the parents are
    # compared, too. Whatever takes the name afterwards, this folder stays the current one.
    enter() {
        cd "$1" && [ -n "$(/usr/bin/find "$1" -prune -type d -samefile .)" ] &&
            [ -n "$(/usr/bin/find .. -prune -samefile "${1%/*}/.")" ] &&
            [ -n "$(/usr/bin/find "${1%/*}/." -xdev -mindepth 1 -maxdepth 2 \
                ! -samefile . -prune -path "*/./*/*" -print -quit)" ]
    }

    # Removes what is in the current folder and on its volume. -delete follows no link that takes a
    # folder's place meanwhile. Some Linux systems' find has no -delete and is given paths instead.
    empty() {
        if [ "$find_deletes" = yes ]; then
            /usr/bin/find . -xdev -mindepth 1 -depth -delete
        else
            /usr/bin/find . -xdev ! -type d -exec /bin/rm -f -- {} +
            /usr/bin/find . -xdev -mindepth 1 -type d -exec /bin/rmdir -p -- {} +
        fi
    }

    # Every path is written out, so that no mistake elsewhere can change what is removed. What
    # fails here is found below.
    remove() {
        for folder in "/Applications/kovra.app" "/Applications/KovraAgent.app" \
            "/Library/Input Methods/"kovraInput*.app "/tmp/kovra"; do
            (enter "$folder" && empty)
        done
        # What is a link, a file or an empty folder by now.
        /bin/rm -df -- "/Applications/kovra.app" "/Applications/KovraAgent.app" \
            "/Library/Input Methods/"kovraInput*.app "/tmp/kovra"
    }

    # The mount points in df's table, each once.
    mount_points() {
        /usr/bin/sed -n 's/.*[0-9]% *//p' | /usr/bin/sort -u
    }

    # Tells what stayed, the first two by name, and what helps. Instead of a path that is longer than
    # $1 characters, could break the line or be taken for the words of a refused prompt, its folder
    # is told.
    tell() {
        count=0
        help=
        for path in "/Applications/kovra.app" "/Applications/KovraAgent.app" \
            "/Library/Input Methods/"kovraInput*.app "/tmp/kovra"; do
            if [ -e "$path" ] || [ -L "$path" ]; then
                beside=$(/bin/df -P "${path%/*}" | mount_points)
                # A volume in its place may be large, and is not searched.
                inside=$(/usr/bin/find "$path" -prune -type d -exec /bin/df -P {} + | mount_points)
                [ "$inside" != "$beside" ] ||
                    inside=$(/usr/bin/find "$path" -xdev -type d -exec /bin/df -P {} + |
                        mount_points)
                [ -z "$inside" ] || [ "$inside" = "$beside" ] || help="eject the volume"
                case $path in
                *[!\ -~]* | *[Cc][Aa][Nn][Cc][Ee][Ll]*) path=${path%/*}/… ;;
                esac
                [ "${#path}" -le "$1" ] || path=${path%/*}/…
                count=$((count + 1))
                [ "$count" != 1 ] || first=$path
                [ "$count" != 2 ] || second=$path
            fi
        done
        case $count in
        0)
            printf 'nothing'
            return
            ;;
        1) names=$first ;;
        2) names="$first and $second" ;;
        *) names="$first, $second and $((count - 2)) more" ;;
        esac
        if [ "${refusals:-0}" != 0 ]; then
            help="${help:+$help, }allow it under System Settings › Privacy & Security ›"
            help="$help App Management, or Full Disk Access"
        fi
        printf '%s' "$names stayed${help:+; $help, then Retry}."
    }

    {
        find_deletes=no
        /usr/bin/find /dev/null -type d -delete && find_deletes=yes
        # Twice, because -delete unlocks a folder that was locked in the Finder only after it has
        # tried what is in it.
        remove
        refusals=$(remove 2>&1 | /usr/bin/grep -c "Operation not permitted")
        # The page has room for about 200 characters; for fewer if they are wide, but still for two
        # paths of 44.
        stayed=$(tell 44)
        [ "${#stayed}" -le 200 ] || stayed=$(tell 28)
    } >/dev/null 2>&1
    [ "$stayed" != nothing ] || exit 0
    printf '%s' "$stayed" >&2
    exit 1
}
