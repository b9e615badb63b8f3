#!/usr/bin/env bash
# Writes a seed corpus for every fuzz target, one folder each under DEST_ROOT (DEST_ROOT/reader, DEST_ROOT/pk3 ...):
#   reader, rewrite, bindline  from the configuration files of CONFIG_DIR... (default: tests/data/configs, and the
#                              corpus kept beside the project, ../shared/corpus/configs, when it is there)
#   ini, cmdline, payload      small files written here
#   pk3                        small archives made with zip (and Python's zipfile for names zip won't write)
#   tga                        small pictures made with ImageMagick's convert
# A tool that is missing is said, and its seeds are left out.
#
#   fuzz/seed_corpus.sh DEST_ROOT [CONFIG_DIR...]
set -euo pipefail

if [[ $# -lt 1 ]]; then
    echo "usage: $0 DEST_ROOT [CONFIG_DIR...]" >&2
    exit 2
fi
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
mkdir -p "$1"
dest="$(cd "$1" && pwd)"
shift
config_dirs=("$@")
if [[ ${#config_dirs[@]} -eq 0 ]]; then
    config_dirs=("$root/tests/data/configs")
    if [[ -d "$root/../shared/corpus/configs" ]]; then
        config_dirs+=("$root/../shared/corpus/configs")
    else
        echo "seed: no configuration corpus at $root/../shared/corpus/configs; seeding from tests/data/configs only"
    fi
fi
for target in reader rewrite bindline ini cmdline payload pk3 tga; do
    mkdir -p "$dest/$target"
done

# Configuration files: the reader gets each file five times, once behind each scope byte (0 whole file,
# 1 renderer, 2 controls, 3 HUD, 4 railgun); the rewrite the file as it is; the bind lines its bind lines.
for dir in "${config_dirs[@]}"; do
    for file in "$dir"/*.cfg "$dir"/*.config "$dir"/*.ctr "$dir"/*.rnr "$dir"/*.hud "$dir"/*.rlg; do
        [[ -f "$file" ]] || continue
        base="$(basename "$file")"
        for scope in 0 1 2 3 4; do
            { printf "\\x0$scope"; cat "$file"; } >"$dest/reader/$scope-$base"
        done
        cp "$file" "$dest/rewrite/$base"
        # CR LF and lone CR end lines too: the target splits at LF only.
        if tr '\r' '\n' <"$file" | grep -a -i -E '^[[:space:]"]*bind' >"$dest/bindline/$base"; then :; else
            rm -f "$dest/bindline/$base"
        fi
    done
done

# tarnwick.ini as the program writes it, and as hands or other programs may leave it.
printf '[Tarnwick]\r\nq3dir=C:\\Program Files\\Quake III Arena\r\ngradient=1\r\naot=0\r\nwx=1200\r\nwy=900\r\npv_wx=3600\r\npv_wy=3600\r\npv_open=0\r\n' \
    >"$dest/ini/written.ini"
printf '\xef\xbb\xbf; kept\n[Other]\nq3dir=elsewhere\n\n[tarnwick]\n Q3DIR = "/opt/quake3" \nGRADIENT=-1\naot=-2\nwx=1.5\nwy=2.5\n\n[Last]\nx=y' \
    >"$dest/ini/mixed.ini"
printf '[Tarnwick]\nq3dir=\ngradient=yes\nwx=1e3\r[Tarnwick]\rwy=99999999999\n[Tarnwick\npv_open=1' >"$dest/ini/odd.ini"

# Command lines (arguments parted by a NUL) and the payloads a later copy sends.
printf '%s' 'C:\Games\baseq3\q3config.cfg' >"$dest/cmdline/cfg"
printf '"%s"' '/home/player/.q3a/baseq3/autoexec.CONFIG' >"$dest/cmdline/quoted"
printf 'b.ctr\0d.rnr\0e.hud' >"$dest/cmdline/arguments"
printf '%s' '/OPEN' >"$dest/cmdline/open"
printf '%s' '*.config' >"$dest/cmdline/wildcard"
printf '\0' >"$dest/payload/restore"
printf '%s' '/tmp/Spiel ü/é.cfg' >"$dest/payload/accents"
printf '\xef\xbb\xbf"g.rlg"' >"$dest/payload/bom"
printf 'a.cfg\0b.cfg' >"$dest/payload/zero"
printf 'x\xc3(.cfg' >"$dest/payload/not-utf8"

# Archives: stored, deflated, bzip2, encrypted, with folders and a comment, and names zip would never write.
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/src/models/players/sarge" "$work/src/scripts"
printf 'seta cg_fov "110"\r\n' >"$work/src/autoexec.cfg"
printf 'textures/base/wall\n{\n\tmap textures/base/wall.tga\n}\n' >"$work/src/scripts/base.shader"
head -c 600 /dev/zero | tr '\0' 'q' >"$work/src/models/players/sarge/animation.cfg"
if command -v zip >/dev/null; then
    (
        cd "$work/src"
        zip -q -0 -X "$dest/pk3/stored.pk3" autoexec.cfg scripts/base.shader
        zip -q -9 -X -r "$dest/pk3/folders.pk3" .
        zip -q -X -Z bzip2 "$dest/pk3/bzip2.pk3" models/players/sarge/animation.cfg
        zip -q -X -P secret "$dest/pk3/encrypted.pk3" autoexec.cfg
        echo "a comment" | zip -q -X -z "$dest/pk3/comment.pk3" autoexec.cfg
    )
else
    echo "seed: zip is not installed; no archives from it"
fi
if command -v python3 >/dev/null; then
    python3 - "$dest/pk3/names.pk3" <<'PY'
import sys, zipfile
with zipfile.ZipFile(sys.argv[1], "w", zipfile.ZIP_DEFLATED) as z:
    for name in ("maps\\q3dm17.bsp", "/abs.cfg", "../up.cfg", "C:drive.cfg", "dir/", "x/./y.tga"):
        z.writestr(name, b"data " * 8)
PY
else
    echo "seed: python3 is not installed; no archive with odd names"
fi

# Skin icons: colour (type 2) and grey (type 3), each also run-length encoded (10, 11), with alpha, from the top,
# and a colour-mapped one the reader refuses.
if command -v convert >/dev/null; then
    convert -size 4x3 gradient:red-blue -type TrueColor "$dest/tga/colour.tga"
    convert -size 4x3 gradient:red-blue -type TrueColor -compress RLE "$dest/tga/colour-rle.tga"
    convert -size 4x3 gradient:white-black -type Grayscale "$dest/tga/grey.tga"
    convert -size 4x3 gradient:white-black -type Grayscale -compress RLE "$dest/tga/grey-rle.tga"
    convert -size 4x3 xc:'rgba(255,0,0,0.5)' -type TrueColorAlpha -compress RLE "$dest/tga/alpha-rle.tga"
    convert -size 5x2 gradient:red-blue -type TrueColor -orient TopLeft "$dest/tga/top-down.tga"
    convert -size 5x2 gradient:red-blue -type Palette "$dest/tga/palette.tga"
else
    echo "seed: ImageMagick's convert is not installed; no pictures"
fi

for target in reader rewrite bindline ini cmdline payload pk3 tga; do
    printf '%s: %s seeds\n' "$target" "$(find "$dest/$target" -type f | wc -l)"
done
