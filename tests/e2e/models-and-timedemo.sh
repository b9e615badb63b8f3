#!/usr/bin/env bash
# A game folder of OpenArena's archives beside an engine that notes how it was started: the Player Model Browser
# picks a model in one of its skins, which the save writes, and the timedemo dialog starts a demo that lies in an
# archive, which the engine is given.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# The archives scripts/check-player-models and the other game checks download; a test downloads nothing.
paks="${XDG_CACHE_HOME:-$HOME/.cache}/tarnwick/game-check/root/usr/share/games/openarena/baseoa"
if ! compgen -G "$paks/pak*.pk3" >/dev/null; then
    echo "SKIP: no OpenArena archives in $paks (scripts/check-player-models downloads them)"
    exit "$E2E_SKIP"
fi

step "a game folder of OpenArena's archives and an engine that notes its start"
start_x
make_program
rm "$work/game/quake3.exe" # the engine below is the game
ln -s "$paks"/*.pk3 "$work/game/baseq3/"
cat >"$work/game/ioquake3.x86_64" <<ENGINE
#!/bin/sh
{ pwd; for arg; do printf '%s\n' "\$arg"; done; } >"$work/started.tmp"
exec /bin/mv "$work/started.tmp" "$work/started"
ENGINE
chmod +x "$work/game/ioquake3.x86_64"
cp "$E2E_DATA/configs/22-bhayes-q3config.cfg" "$work/original.cfg"
cfg="$work/home/q3config.cfg"
cp "$work/original.cfg" "$cfg"
start_tarnwick "$cfg"
wait_main '^q3config\.cfg - Tarnwick$'

step "Client page, Player Model: Beret in its first skin"
# The browser lists the models and skins by their labels; the setting is the model/skin in lower case.
skin="$("$E2E_CLI" models "$work/game" | grep -m 1 '^Beret/' | tr '[:upper:]' '[:lower:]')"
[[ -n "$skin" ]] || fail "tarnwick-cli lists no skin of Beret"
locate btnMain_0 cmdModel
click btnMain_0
click cmdModel
wait_window '^Player Model Browser$'
wait_active "$found"
browser_closed()
{
    ! find_window '^Player Model Browser$'
}
pick()
{
    type_text beret
    keys Right Down Return
}
pick
# Keys that come before the first scan has begun meet an empty list; once it has run they wait for its end.
if ! until_true browser_closed; then
    pick
    until_true browser_closed || fail "the browser did not take the model"
fi
wait_active "$main"
keys ctrl+s
printf 'open "%s"\nset model %s\nsave "%s"\n' "$work/original.cfg" "$skin" "$work/expected.cfg" |
    "$E2E_CLI" script - || fail "tarnwick-cli could not set the model"
wait_same_file "$cfg" "$work/expected.cfg"

step "Shift+F6, the demo that lies in an archive, Start"
keys shift+F6
wait_window '^Run Timedemo$'
wait_active "$found"
type_text demo088
keys Return
until_true test -f "$work/started" || fail "the engine was not started"
printf '%s\n' "$work/game" +timedemo 1 +demo demo088-test1.dm_71 >"$work/expected-start"
cmp -s "$work/started" "$work/expected-start" || fail "the engine was started as: $(cat "$work/started")"
echo "the model browser and the timedemo dialog worked on OpenArena's archives"
