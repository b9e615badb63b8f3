#!/usr/bin/env bash
# F3 searches the home folder for q3config.cfg; the second file found, picked from the results, loads.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

step "a home folder with three configurations where players keep them"
start_x
make_program
for file in .q3a/baseq3/q3config.cfg games/quake3/baseq3/Q3CONFIG.CFG old/q3config.cfg; do
    mkdir -p "$(dirname "$work/home/$file")"
    cp "$E2E_DATA/configs/42-xaionaro-spectrum1.cfg" "$work/home/$file"
done
touch "$work/home/old/q3config.cfg.txt"
start_tarnwick
wait_main

step "F3, then Search (the default button) in the home folder"
keys F3
wait_window '^Q3Config Search$'
search="$found"
wait_active "$search"
keys Return

step "the results list, once the search is over, offers the second file"
# The list takes clicks only once the search has ended: until then a click opens nothing.
locate --search "$search" cbResults
popup_count()
{
    xdotool search --onlyvisible --classname tarnwick 2>/dev/null | wc -l
}
windows="$(popup_count)"
list_open()
{
    [[ "$(popup_count)" -gt "$windows" ]]
}
list_opens()
{
    list_open && return 0
    click cbResults
    for _ in $(seq 30); do
        list_open && return 0
        sleep 0.1
    done
    return 1
}
until_true list_opens || fail "the results list never opened"
keys Down Return

step "Load"
keys alt+l
until_true find_window '^Q3CONFIG\.CFG - Tarnwick$' || fail "the second file found was not loaded"
wait_active "$main"
keys ctrl+s
cp "$E2E_DATA/configs/42-xaionaro-spectrum1.cfg" "$work/original.cfg"
"$E2E_CLI" rewrite "$work/original.cfg" "$work/expected.cfg" || fail "tarnwick-cli could not rewrite"
wait_same_file "$work/home/games/quake3/baseq3/Q3CONFIG.CFG" "$work/expected.cfg"
echo "the search found the files and loaded the one picked"
