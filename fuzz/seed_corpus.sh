#!/usr/bin/env bash
# Makes a seed corpus for fuzz_reader from a folder of configuration files: each file five times,
# once behind each scope byte (0 whole file, 1 renderer, 2 controls, 3 HUD, 4 railgun).
#
#   fuzz/seed_corpus.sh SOURCE_DIR DEST_DIR
set -euo pipefail

if [[ $# -ne 2 ]]; then
    echo "usage: $0 SOURCE_DIR DEST_DIR" >&2
    exit 2
fi
src="$1"
dest="$2"
mkdir -p "$dest"

count=0
for file in "$src"/*.cfg "$src"/*.config "$src"/*.ctr "$src"/*.rnr "$src"/*.hud "$src"/*.rlg; do
    [[ -f "$file" ]] || continue
    base="$(basename "$file")"
    for scope in 0 1 2 3 4; do
        { printf "\\x0$scope"; cat "$file"; } >"$dest/$scope-$base"
        count=$((count + 1))
    done
done
echo "$count seeds in $dest"
