#!/usr/bin/env bash
# The HUD area exported through the File menu's dialog, HUD boxes changed, the file imported back: the boxes show
# what they showed before, and a save writes what tarnwick-cli writes for that import.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

step "open a configuration and its HUD page"
start_x
make_program
cp "$E2E_DATA/configs/42-xaionaro-spectrum1.cfg" "$work/original.cfg"
cfg="$work/home/q3config.cfg"
cp "$work/original.cfg" "$cfg"
start_tarnwick "$cfg"
wait_main '^q3config\.cfg - Tarnwick$'
boxes=(chkFPS:box chkTimer:box chkLAG:box chkWModel:box)
locate btnMain_5 "${boxes[@]}"
click btnMain_5
xdotool mousemove 1020 760 # away from the boxes, so none is drawn hovered
declare -A before=()
shown()
{
    local box
    for box in "${boxes[@]}"; do
        [[ "$(pixels "$box")" == "${before[$box]}" ]] || return 1
    done
}
sleep 0.3
for box in "${boxes[@]}"; do
    before[$box]="$(pixels "$box")"
done

step "File, Export..., HUD Display into a file"
hud="$work/home/mine.hud"
keys alt+f e Down Down Return
wait_window '^Export File$'
wait_active "$found"
type_text "$hud"
keys Return
until_true test -s "$hud" || fail "nothing was exported"
wait_active "$main"
"$E2E_CLI" export hud "$work/original.cfg" "$work/expected.hud" || fail "tarnwick-cli could not export"
wait_same_file "$hud" "$work/expected.hud"

step "change the boxes"
for box in "${boxes[@]}"; do
    click "$box"
done
xdotool mousemove 1020 760
changed()
{
    local box
    for box in "${boxes[@]}"; do
        [[ "$(pixels "$box")" != "${before[$box]}" ]] || return 1
    done
}
until_true changed || fail "a click left a box as it was"

step "File, Import..., HUD Display from the file: the boxes return"
keys alt+f i Down Down Return
wait_window '^Import File$'
wait_active "$found"
type_text "$hud"
keys Return
wait_active "$main"
until_true shown || fail "the boxes do not show what they showed before the changes"

step "save with Ctrl+S"
keys ctrl+s
# An import replaces the kept lines with those of the file it reads, which has none.
"$E2E_CLI" import hud "$hud" "$work/original.cfg" "$work/expected.cfg" || fail "tarnwick-cli could not import"
wait_same_file "$cfg" "$work/expected.cfg"
echo "the exported HUD came back into the boxes and the file"
