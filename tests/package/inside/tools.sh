# Inside the bare system: away with the package of the programs, then all that it and its tests need.
# shellcheck shell=bash
needed() {
    for package in /packages/*.deb; do dpkg-deb -f "$package" Depends; done | paste -sd,
}
tools=(xvfb xdotool x11-utils man-db bash-completion libglib2.0-bin xdg-utils desktop-file-utils g++ cmake ninja-build)
apt-get purge -qy anomalis
apt-get install -qy --no-install-recommends "${tools[@]}"
apt-get satisfy -qy --no-install-recommends "$(needed)"
