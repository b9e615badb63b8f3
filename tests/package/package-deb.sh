#!/usr/bin/env bash
# The Debian package as a user gets it: cpack builds it from this build folder, dpkg -x unpacks it into a scratch
# root, and what it holds is tried there: the command-line program on a corpus file (it must write what the build's
# own writes), the desktop entry with desktop-file-validate, the MIME package with update-mime-database.
#
# package-deb.sh BUILD_DIR BUILT_CLI CONFIG_FOLDER...   (the first folder that exists gives the corpus file)
set -euo pipefail

build=$1 built_cli=$2
shift 2

fail()
{
    echo "package-deb: $*" >&2
    exit 1
}

for tool in cpack dpkg-deb dpkg-shlibdeps file desktop-file-validate update-mime-database; do
    command -v "$tool" >/dev/null || fail "$tool is missing (scripts/test installs it)"
done
config=
for folder in "$@"; do
    if [[ -d "$folder" ]]; then
        config=$(find "$folder" -maxdepth 1 -name '*.cfg' | sort | head -n 1)
        break
    fi
done
[[ -n "$config" ]] || fail "no corpus file in $*"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cpack --config "$build/CPackConfig.cmake" -B "$scratch/out" >"$scratch/cpack.log" 2>&1 \
    || { cat "$scratch/cpack.log" >&2; fail "cpack failed"; }
debs=("$scratch"/out/tarnwick_*.deb)
[[ -f "${debs[0]}" ]] || fail "cpack made no tarnwick_*.deb: $(ls "$scratch/out")"
deb=${debs[0]}
dpkg -x "$deb" "$scratch/root"
usr=$scratch/root/usr

# Depends is what dpkg-shlibdeps found the programs need, with libzip and Qt's SVG plugin, which they load by name.
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libc6 libqt6widgets6 libqt6svg6 libzip4; do
    [[ "$depends" == *"$lib "* || "$depends" == *"$lib,"* || "$depends" == *"$lib" ]] \
        || fail "Depends lacks $lib: $depends"
done

# The two programs and nothing else of the build (no test or build-time tool).
programs=$(cd "$usr/bin" && ls | tr '\n' ' ')
[[ "$programs" == "tarnwick tarnwick-cli " ]] || fail "usr/bin holds: $programs"
for file in share/tarnwick/Images/hud.img share/doc/tarnwick/copyright \
    share/icons/hicolor/scalable/apps/tarnwick.svg share/icons/hicolor/16x16/apps/tarnwick.png \
    share/icons/hicolor/256x256/mimetypes/application-x-tarnwick-hud.png; do
    [[ -s "$usr/$file" ]] || fail "missing: usr/$file"
done
grep -q '^Files: \*' "$usr/share/doc/tarnwick/copyright" || fail "the copyright file is not machine-readable"
for page in tarnwick tarnwick-cli; do
    gzip -dc "$usr/share/man/man1/$page.1.gz" | grep -q "^\.TH ${page^^} 1 .*Tarnwick [0-9]" \
        || fail "no manual page $page.1.gz"
done

# The packaged program writes what the build's own writes.
"$usr/bin/tarnwick-cli" rewrite "$config" "$scratch/packaged.cfg" || fail "the packaged tarnwick-cli failed"
"$built_cli" rewrite "$config" "$scratch/built.cfg"
cmp "$scratch/built.cfg" "$scratch/packaged.cfg" || fail "the packaged tarnwick-cli wrote another file"

desktop-file-validate "$usr/share/applications/tarnwick.desktop" || fail "the desktop entry is not valid"
grep -qx 'Exec=tarnwick %f' "$usr/share/applications/tarnwick.desktop" \
    || fail "the desktop entry does not run tarnwick from PATH"
update-mime-database "$usr/share/mime" || fail "update-mime-database refused the MIME package"
for type in cfg config controls renderer hud railgun; do
    [[ -s "$usr/share/mime/application/x-tarnwick-$type.xml" ]] || fail "the MIME database lacks x-tarnwick-$type"
done
grep -qx '30:application/x-tarnwick-cfg:\*\.cfg' "$usr/share/mime/globs2" || fail "the *.cfg glob is not weighed 30"
echo "package-deb: $(basename "$deb") is whole"
