# Sourced by ./run and ./test: what the machine must have before the build.
# shellcheck shell=bash

# One line a package: where it is needed, its name, what for.
package_list() {
    cat <<'LIST'
build g++                 the compiler
build cmake               the build description
build ninja-build         the build itself
build qt6-base-dev        the window, printing, PDF and PNG pictures
build qt6-svg-dev         SVG pictures
build qt6-wayland         the window on a desktop without X11
build libemf-dev          enhanced metafiles
build libeigen3-dev       the least-squares solver
build libcli11-dev        the command line of anomalis-batch
build nlohmann-json3-dev  JSON output
build libproj-dev         coordinate systems
build libsqlite3-dev      GeoPackage files
build zlib1g-dev          packed survey files
build libtomlplusplus-dev survey plans
build fonts-dejavu-core   the font of the charts on a machine without a desktop
build qt6-tools-dev       the guide in the window
build qt6-documentation-tools the guide in the window
build python3-sphinx      the guide
build python3-sphinxcontrib.qthelp the guide
build python3-myst-parser the guide
build furo                the guide's look
test  libgtest-dev        the tests
test  libgmock-dev        the tests
test  libbenchmark-dev    the benchmarks
test  poppler-utils       looking into exported PDF pages
test  inkscape            looking into exported metafiles and SVG drawings
test  python3             reading exported files back
test  python3-ezdxf       opening exported drawings
test  python3-pandas      opening exported tables
test  python3-dev         the module for Python
test  pybind11-dev        the module for Python
test  python3-numpy       the module for Python
test  python3-matplotlib  the example in Python
test  python3-jsonschema  documents against their schemas
test  python3-mypy        the types of the module for Python
test  clang-format        the format of the sources
test  ccache              compiling once what all clones share
test  desktop-file-utils  the entry in the menus
test  appstream           the description for shops of software
test  shared-mime-info    the type of workspaces
test  librsvg2-bin        the icons in all sizes
package librsvg2-bin      the icons in all sizes
package python3-dev       the module for Python
package pybind11-dev      the module for Python
package dpkg-dev          what the packages depend on
package lintian           what Debian asks of packages
deep  mmdebstrap          a bare root that the packages are tried in
deep  slurm-wlm           a cluster of two nodes for whole surveys
deep  man-db              the man pages as they are read
deep  groff-base          the same
deep  bash-completion     completion of command lines
deep  zsh                 the same
deep  fish                the same
deep  munge               the keys of that cluster
deep  parallel            a survey on the machines of a list
deep  strace              seeing that nothing opens the network
tidy  clang-tidy          the checks of the sources
tidy  clang               a second compiler, and the fuzzers
tidy  libclang-rt-dev     the fuzzers
LIST
}

package_missing() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" != installed ]
}

# ensure_packages GROUP...: installs what is missing, or prints the command that does and fails.
ensure_packages() {
    command -v dpkg-query >/dev/null || {
        echo "This is no Debian system; the packages needed are, by their Debian names:"
        package_list
        return 0
    }
    local missing=() group package reason
    while read -r group package reason; do
        case " $* " in *" $group "*) ;; *) continue ;; esac
        package_missing "$package" || continue
        [ ${#missing[@]} -gt 0 ] || echo "Missing packages:"
        printf '  %-20s %s\n' "$package" "$reason"
        missing+=("$package")
    done < <(package_list)
    [ ${#missing[@]} -gt 0 ] || return 0

    local install="apt-get install -y --no-install-recommends ${missing[*]}" as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! sudo -n true 2>/dev/null; then
            echo "They cannot be installed from here. Please run, then start again:"
            echo "  sudo sh -c 'apt-get update && $install'"
            return 1
        fi
        as_root=(sudo -n)
    fi
    echo "Installing them."
    "${as_root[@]}" apt-get update -q || echo "The package lists could not be refreshed; trying with the old ones."
    # shellcheck disable=SC2086
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive $install
}
