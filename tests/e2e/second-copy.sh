#!/usr/bin/env bash
# A second copy started with a file hands it to the first and ends without a window; the first opens it.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

step "the first copy, with a configuration"
start_x
make_program
cp "$E2E_DATA/configs/22-bhayes-q3config.cfg" "$work/home/first.cfg"
cp "$E2E_DATA/configs/40-xaionaro-seed-cp1252.cfg" "$work/original.cfg"
cp "$work/original.cfg" "$work/home/second.cfg"
start_tarnwick "$work/home/first.cfg"
wait_main '^first\.cfg - Tarnwick$'

step "a second copy with another file ends at once"
tarnwick "$work/home/second.cfg" >>"$work/log" 2>&1 &
second=$!
pids+=("$second")
until_true has_ended "$second" || fail "the second copy is still running"
wait "$second" || fail "the second copy ended with status $?"

step "the first copy opens the file"
until_true find_window '^second\.cfg - Tarnwick$' || fail "the first copy did not open the handed-over file"
[[ "$found" == "$main" ]] || fail "the file opened in another window"
[[ "$(xdotool search --onlyvisible --name ' - Tarnwick$' | wc -l)" -eq 1 ]] || fail "more than one main window"

step "and saves it where it came from"
wait_active "$main"
keys ctrl+s
"$E2E_CLI" rewrite "$work/original.cfg" "$work/expected.cfg" || fail "tarnwick-cli could not rewrite"
wait_same_file "$work/home/second.cfg" "$work/expected.cfg"
echo "the second copy handed its file to the first"
