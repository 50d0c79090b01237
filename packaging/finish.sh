#!/usr/bin/env bash
# finish.sh FOLDER VERSION CONTACT: what Debian asks of packages besides their files, done to those that lie ready in the
# folders of their components below FOLDER.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
staged=$1 version=$2 contact=$3
declare -A package=([programs]=anomalis [development]=libanomalis-dev [python]=python3-anomalis)

# What every package has: whose work it is, and what has changed.
add_papers() {
    local doc=$1/usr/share/doc/$2
    mkdir -p "$doc"
    install -m 644 debian/copyright "$doc/copyright"
    python3 ../desktop/releases.py debian ../CHANGELOG.md "$version" "$contact" | gzip -9n >"$doc/changelog.gz"
    if [ -f "debian/$2.lintian-overrides" ]; then
        install -D -m 644 "debian/$2.lintian-overrides" "$1/usr/share/lintian/overrides/$2"
    fi
}

# Papers for those who have the sources; the licence stands in `copyright`.
drop_papers_of_the_sources() {
    rm -f "$1"/usr/share/doc/anomalis/{README.md,LICENSE}
}

compress_manual() {
    [ ! -d "$1/usr/share/man" ] || find "$1/usr/share/man" -type f ! -name '*.gz' -exec gzip -9n {} +
}

# What the pages share with other guides comes from Debian's own package of it. Sheets of style with nothing in them say
# so.
register_guide() {
    local pages=$1/usr/share/doc/anomalis/html shared=/usr/share/javascript/sphinxdoc/1.0 script
    [ -d "$pages" ] || return 0
    for script in doctools language_data searchtools sphinx_highlight; do
        ! cmp -s "$shared/$script.js" "$pages/_static/$script.js" ||
            ln -sfn "../../../../javascript/sphinxdoc/1.0/$script.js" "$pages/_static/$script.js"
    done
    find "$1/usr/share/doc" -name '*.css' -empty -exec sh -c 'echo "/* Nothing. */" >"$1"' - {} ';'
    install -D -m 644 debian/anomalis.guide "$1/usr/share/doc-base/anomalis.guide"
}

# Where one looks for examples, a way to where the program looks for them.
link_examples() {
    ln -sfn ../../anomalis/examples "$1/usr/share/doc/anomalis/examples"
}

# strip(1) of an install leaves archives alone.
strip_archives() {
    find "$1" -name '*.a' -exec strip --strip-debug --remove-section=.comment --enable-deterministic-archives {} +
}

settle_modes() {
    find "$1" -type d -exec chmod 755 {} +
    find "$1" -type f -perm /111 -exec chmod 755 {} +
    find "$1" -type f ! -perm /111 -exec chmod 644 {} +
    find "$1" -name '*.so' -exec chmod 644 {} +
}

for component in "${!package[@]}"; do
    root=$staged/$component
    [ -d "$root" ] || continue
    case $component in
        programs)
            drop_papers_of_the_sources "$root"
            compress_manual "$root"
            register_guide "$root"
            link_examples "$root"
            ;;
        development) strip_archives "$root" ;;
    esac
    add_papers "$root" "${package[$component]}"
    settle_modes "$root"
    # The same sources give the same bytes.
    find "$root" -exec touch --no-dereference --date="@${SOURCE_DATE_EPOCH:-$(date +%s)}" {} +
done
