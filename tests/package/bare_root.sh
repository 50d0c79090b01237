#!/usr/bin/env bash
# bare_root.sh PACKAGES [ROOT]: what somebody meets who installs the packages of the folder PACKAGES on a bare Debian 12,
# uses them and removes them again. Makes that system in the folder ROOT (else in one of its own) and takes it away at the
# end. Needs root, mmdebstrap and the machine's own sources of packages.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
if [ "$(id -u)" -ne 0 ]; then
    echo "bare_root.sh makes a system of its own in a folder: run it as root."
    exit 1
fi
packages=$(cd "$1" && pwd)
root=${2:-$(mktemp -d --tmpdir bare_root.XXXXXX)}
work=$(mktemp -d)
trap 'rm -rf --one-file-system "$root" "$work"' EXIT
began=$SECONDS

say() {
    printf '%4d s  %s\n' $((SECONDS - began)) "$*"
}

fail() {
    echo "FAILED: $*"
    exit 1
}

# Where this machine's apt takes Debian 12 from.
sources() {
    # shellcheck disable=SC2016
    apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
        sort -u | grep ' bookworm'
}

# Runs a script inside, without this machine's processes and without its variables.
inside() {
    # shellcheck disable=SC2016
    unshare --mount --pid --fork --ipc --kill-child bash -c '
        mount -t proc proc "$0/proc"
        mount --rbind /dev "$0/dev"
        mount -t tmpfs tmpfs "$0/tmp"
        exec chroot "$0" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/tmp LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
            bash -eEuo pipefail -c "trap '\''echo \"here it ended: \$BASH_COMMAND\"'\'' ERR; $1"' "$root" "$1"
}

# Every file with its kind, rights and owner; logs and caches of apt, dpkg, debconf and the linker aside, and the pages
# that man keeps for a week after it has shown them.
list_files() {
    find "$root" -xdev \( -path "$root/proc/*" -o -path "$root/dev/*" -o -path "$root/tmp/*" -o -path "$root/packages" \
        -o -path "$root/var/cache/apt/*" -o -path "$root/var/lib/apt/*" -o -path "$root/var/log/*" \
        -o -path "$root/var/lib/dpkg/*-old" -o -path "$root/var/cache/debconf/*" -o -path "$root/var/cache/ldconfig/*" \
        -o -path "$root/var/cache/man/cat*/*" \) \
        -prune -o -printf '/%P %y %m %u\n' | LC_ALL=C sort
}

# What is in the files that belong to many packages, such as lists of types and of icons.
list_contents() {
    (cd "$root" && find etc usr/share var/lib -xdev -type f ! -path 'var/lib/apt/*' ! -path 'var/lib/dpkg/*-old' \
        -exec sha256sum {} + | LC_ALL=C sort -k 2)
}

make_root() {
    sources >"$work/sources.list"
    mmdebstrap --quiet --variant=minbase bookworm "$root" - <"$work/sources.list" || fail "no bare root could be made"
    mkdir "$root/packages"
    cp "$packages"/*.deb "$root/packages/"
    cp "$here/inside"/*.sh "$root/packages/"
    cp --dereference /etc/resolv.conf "$root/etc/resolv.conf"
}

main() {
    make_root
    say "a bare Debian 12: $(du -sxm "$root" | cut -f1) MB, $(find "$root/var/lib/dpkg/info" -name '*.list' | wc -l) packages"

    # Nothing else there: what the packages say they need is all they get.
    inside 'apt-get update -q; apt-get install -qy --no-install-recommends /packages/anomalis_*.deb' >"$work/log" 2>&1 ||
        { cat "$work/log"; fail "anomalis cannot be installed"; }
    say "anomalis installed: $(du -sxm "$root" | cut -f1) MB, $(find "$root/var/lib/dpkg/info" -name '*.list' | wc -l) packages"
    inside '. /packages/programs.sh'
    say "the programs run"

    # Everything that the packages and these tests need, but not they themselves: from here nothing may remain of them.
    inside '. /packages/tools.sh' >"$work/log" 2>&1 || { cat "$work/log"; fail "the tools cannot be installed"; }
    list_files >"$work/files_before"
    list_contents >"$work/contents_before"
    say "removed again, what it needs and what tests it installed"

    inside 'apt-get install -qy --no-install-recommends /packages/*.deb' >"$work/log" 2>&1 ||
        { cat "$work/log"; fail "the packages cannot be installed"; }
    say "all packages installed"
    inside '. /packages/desktop.sh'
    say "a double click opens a workspace, F1 the guide"
    inside '. /packages/terminal.sh'
    say "manual, completion, module for Python"
    inside '. /packages/development.sh'
    say "a program in C++ built and run"

    inside 'apt-get purge -qy anomalis libanomalis-dev python3-anomalis' >"$work/log" 2>&1 ||
        { cat "$work/log"; fail "the packages cannot be removed"; }
    list_files >"$work/files_after"
    list_contents >"$work/contents_after"
    diff "$work/files_before" "$work/files_after" || fail "files remain or are missing after the packages went"
    diff "$work/contents_before" "$work/contents_after" || fail "files are not what they were before"
    say "removed without a trace: $(wc -l <"$work/files_after") files and folders as before"
}

main
