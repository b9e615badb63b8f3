#!/usr/bin/env bash
# A player's configuration opened from the command line, changed by clicking and typing (a check box, a slider
# moved with the keyboard, a list, a number field, a key defined in the capture dialog and one deleted with the
# right button) and saved with Ctrl+S: the file holds what tarnwick-cli writes for the same edits, byte for byte.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

step "open a configuration from the command line"
start_x
make_program
cp "$E2E_DATA/configs/22-bhayes-q3config.cfg" "$work/original.cfg"
cfg="$work/home/q3config.cfg"
cp "$work/original.cfg" "$cfg"
start_tarnwick "$cfg"
wait_main '^q3config\.cfg - Tarnwick$'

step "Renderer page: light flares on, the gamma slider by the keyboard, the darkest shadows, a wider view"
locate btnMain_3 chkFlares:box sldGamma cbShadows txtFOV
click btnMain_3
click chkFlares:box
click sldGamma
keys End Left Left
click cbShadows
keys End Return
click txtFOV
keys ctrl+a
type_text 110
keys Tab

step "Control page: a second key to crouch, captured; moving backward loses its first key to the right button"
locate btnMain_2 btnCtrls_0 btnKeys_6:right btnKeys_2:left
click btnMain_2
click btnCtrls_0
click btnKeys_6:right
capture_up()
{
    local active
    active="$(xdotool getactivewindow 2>/dev/null)"
    [[ -n "$active" && "$active" != "$main" ]]
}
until_true capture_up || fail "the capture dialog did not come up"
keys q
wait_active "$main"
click btnKeys_2:left 3

step "save with Ctrl+S"
keys ctrl+s
cat >"$work/edits" <<SCRIPT
open "$work/original.cfg"
set r_flares 1
set r_gamma 2.8
set cg_shadows 3
set cg_fov 110
bind 6 2 Q
unbind 2 1
save "$work/expected.cfg"
SCRIPT
"$E2E_CLI" script "$work/edits" || fail "tarnwick-cli could not make the same edits"
wait_same_file "$cfg" "$work/expected.cfg"
echo "the saved file is what tarnwick-cli writes for the same edits"
