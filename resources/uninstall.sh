#!/bin/sh
# Removes the parts of kovra that only an administrator may remove. The uninstaller runs it as
# root, through the system's password dialog; its paths are those that the scan marks as needing an
# administrator. Links are removed, not followed, and no file of a volume that is mounted at or in one
# of the folders is touched. If something is left, prints it on standard error and fails.

# A shell reads its script while it runs it. This is one compound command that ends in an exit, so
# that the shell has read it all before it runs any of it: the script may be overwritten meanwhile.
{
    set -u
    PATH=/usr/bin:/bin:/usr/sbin:/sbin
    IFS=' 	
'
    LC_ALL=C
    export PATH LC_ALL
    set +ef
    umask 022
    cd / || exit 1

    if [ "$(/usr/bin/id -u)" != 0 ]; then
        echo "kovra: only root may remove kovra for all users." >&2
        exit 1
    fi

    # Changes to a folder. Succeeds if the path still names that folder and no link was followed, and
    # if find, started in the parent folder, reaches its content without leaving the volume. A Mac's
    # find compares inode numbers, which are unique on one volume only, so the parent is compared too.
    # If the path is replaced afterwards, the current folder stays the one that was checked.
    enter() {
        cd "$1" && [ -n "$(/usr/bin/find "$1" -prune -type d -samefile .)" ] &&
            [ -n "$(/usr/bin/find .. -prune -samefile "${1%/*}/.")" ] &&
            [ -n "$(/usr/bin/find "${1%/*}/." -xdev -mindepth 1 -maxdepth 2 \
                ! -samefile . -prune -path "*/./*/*" -print -quit)" ]
    }

    # Removes the content of the current folder on its volume. -delete does not follow a link that
    # replaces a folder meanwhile. A find without it, which no Mac has, works by paths.
    empty() {
        if [ "$find_deletes" = yes ]; then
            /usr/bin/find . -xdev -mindepth 1 -depth -delete
        else
            /usr/bin/find . -xdev ! -type d -exec /bin/rm -f -- {} +
            /usr/bin/find . -xdev -mindepth 1 -type d -exec /bin/rmdir -p -- {} +
        fi
    }

    # Every path is spelled out, so that no mistake elsewhere can change what is removed. What fails
    # to be removed is found below.
    remove() {
        for folder in "/Applications/kovra.app" "/Applications/KovraAgent.app" \
            "/Library/Input Methods/"kovraInput*.app "/tmp/kovra"; do
            (enter "$folder" && empty)
        done
        # By now each is a link, a file or an empty folder.
        /bin/rm -df -- "/Applications/kovra.app" "/Applications/KovraAgent.app" \
            "/Library/Input Methods/"kovraInput*.app "/tmp/kovra"
    }

    # The distinct mount points in df's table.
    mount_points() {
        /usr/bin/sed -n 's/.*[0-9]% *//p' | /usr/bin/sort -u
    }

    # Prints what is left, the first two by path, and what helps. Of a path with more than $1
    # characters only the folder is printed, as of one that could break the line or be mistaken for
    # the message of a refused prompt.
    tell() {
        count=0
        help=
        for path in "/Applications/kovra.app" "/Applications/KovraAgent.app" \
            "/Library/Input Methods/"kovraInput*.app "/tmp/kovra"; do
            if [ -e "$path" ] || [ -L "$path" ]; then
                beside=$(/bin/df -P "${path%/*}" | mount_points)
                # A volume mounted there may be large, and is not searched.
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
        # Twice: a folder that is locked in the Finder is unlocked only after its content was tried.
        remove
        refusals=$(remove 2>&1 | /usr/bin/grep -c "Operation not permitted")
        # The page has room for 200 characters, or for two paths of 44 of the widest letters.
        stayed=$(tell 44)
        [ "${#stayed}" -le 200 ] || stayed=$(tell 28)
    } >/dev/null 2>&1
    [ "$stayed" != nothing ] || exit 0
    printf '%s' "$stayed" >&2
    exit 1
}
