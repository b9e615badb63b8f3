# What the checks against the real game share: a cache of Debian's game packages, extracted once, and the
# command-line program they ask. Sourced by scripts/check-*; sets `cache`.
cache="${XDG_CACHE_HOME:-$HOME/.cache}/tarnwick/game-check"

# Downloads PACKAGE into the cache once; a stamp marks a complete extraction. False when the package
# archive does not offer it.
fetch()
{
    local package="$1"
    [[ -f "$cache/$package.done" ]] && return 0
    if ! apt-cache show "$package" >/dev/null 2>&1; then
        return 1
    fi
    echo "downloading $package into $cache"
    local sandbox=()
    if [[ "$(id -u)" -eq 0 ]]; then
        sandbox=(-o APT::Sandbox::User=root) # _apt can't write to a folder of root's
    fi
    rm -rf "$cache/deb"
    mkdir -p "$cache/deb" "$cache/root"
    (cd "$cache/deb" && apt-get download -q "${sandbox[@]}" "$package" >/dev/null)
    dpkg-deb -x "$cache/deb/"*.deb "$cache/root"
    rm -rf "$cache/deb"
    touch "$cache/$package.done"
}
