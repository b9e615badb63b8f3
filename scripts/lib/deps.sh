# Shared by scripts/run, scripts/test, scripts/bench and .ci/run (sourced, not executed).
#
#   tarnwick_install_deps               install whatever Debian package the build needs and is missing
#   tarnwick_build BUILD_DIR [ARGS...]  configure BUILD_DIR (Ninja) if needed, then build it
#   tarnwick_check_format               list the C++ files clang-format would change; fails when there are any
#
# TARNWICK_ROOT is the repository root; relative build folders are taken from there.
# Set TARNWICK_SKIP_DEPS=1 to skip the package check (e.g. on a machine that is not Debian).

TARNWICK_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"

TARNWICK_DEPS=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-base-dev-tools qt6-svg-dev
    libzip-dev zipcmp zipmerge ziptool zip unzip
    xvfb xauth xdotool imagemagick x11-apps
    trayer openbox x11-utils  # a notification area, a window manager and xprop for the tray test under X
    clang libclang-rt-14-dev clang-format gawk
    fonts-wine  # a free Tahoma for the window text (loaded from Wine's font folder)
    dpkg-dev file desktop-file-utils shared-mime-info  # cpack's Debian package (dpkg-shlibdeps, file) and its test
)

# Prints the packages of TARNWICK_DEPS that are not installed, one a line.
tarnwick_missing_deps()
{
    # One dpkg-query call for all of them; a package dpkg has never heard of is simply not listed.
    local -A installed=()
    local pkg status
    while IFS=$'\t' read -r pkg status; do
        if [[ "$status" == "install ok installed" ]]; then
            installed["${pkg%%:*}"]=1
        fi
    done < <(dpkg-query -W -f='${Package}\t${Status}\n' "${TARNWICK_DEPS[@]}" 2>/dev/null || true)
    for pkg in "${TARNWICK_DEPS[@]}"; do
        if [[ -z "${installed[$pkg]:-}" ]]; then
            printf '%s\n' "$pkg"
        fi
    done
}

tarnwick_install_deps()
{
    if [[ "${TARNWICK_SKIP_DEPS:-0}" == 1 ]]; then
        return 0
    fi
    if ! command -v dpkg-query >/dev/null 2>&1; then
        echo "tarnwick: dpkg-query not found; not a Debian system, skipping the package check" >&2
        return 0
    fi

    local missing
    mapfile -t missing < <(tarnwick_missing_deps)
    if [[ ${#missing[@]} -eq 0 ]]; then
        return 0
    fi

    local -a sudo=()
    if [[ "$(id -u)" -ne 0 ]]; then
        if command -v sudo >/dev/null 2>&1; then
            sudo=(sudo)
        else
            echo "tarnwick: missing packages: ${missing[*]}" >&2
            echo "tarnwick: not root and no sudo; install them as root and run again" >&2
            return 1
        fi
    fi

    echo "tarnwick: installing missing packages: ${missing[*]}" >&2
    "${sudo[@]}" apt-get update || return 1
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}" || return 1
}

tarnwick_build()
{
    if [[ $# -lt 1 ]]; then
        echo "tarnwick_build: usage: tarnwick_build BUILD_DIR [cmake args...]" >&2
        return 2
    fi
    local dir="$1"
    shift

    # CI builds with every warning an error (TARNWICK_WERROR=ON in the environment).
    if [[ "${TARNWICK_WERROR:-OFF}" == ON ]]; then
        set -- "$@" -DTARNWICK_WERROR=ON
    fi
    (
        cd "$TARNWICK_ROOT" || exit 1
        if [[ ! -f "$dir/build.ninja" || $# -gt 0 ]]; then
            cmake -S . -B "$dir" -G Ninja "$@" || exit 1
        fi
        cmake --build "$dir" || exit 1
    )
}

tarnwick_check_format()
{
    local -a unformatted=()
    local file
    while IFS= read -r -d '' file; do
        [[ -f "$TARNWICK_ROOT/$file" ]] || continue # deleted, not yet committed
        if ! clang-format --dry-run --Werror "$TARNWICK_ROOT/$file" >/dev/null 2>&1; then
            unformatted+=("$file")
        fi
    done < <(cd "$TARNWICK_ROOT" && git ls-files -z -- '*.cpp' '*.h')
    if [[ ${#unformatted[@]} -gt 0 ]]; then
        echo "tarnwick: out of format (run clang-format -i on them):" >&2
        printf '  %s\n' "${unformatted[@]}" >&2
        return 1
    fi
}
