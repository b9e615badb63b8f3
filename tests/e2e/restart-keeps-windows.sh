#!/usr/bin/env bash
# With the HUD preview open and the tray present, the player puts both windows elsewhere and the main window on top
# (from the tray icon's menu), closes, and starts again: both windows stand where they stood, the preview is open
# and the main window is on top.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

step "start beside a notification area"
start_x --tray
make_program
start_tarnwick
wait_main

step "Tools, Show Preview"
keys alt+t p
wait_window '^Preview$'
preview="$found"

step "Always On Top from the tray icon's menu"
icon=""
find_icon()
{
    local id size
    for id in $(xdotool search --classname tarnwick 2>/dev/null); do
        size="$(xdotool getwindowgeometry "$id" | awk '/Geometry/ { print $2 }')"
        if [[ "${size%x*}" -le 64 && "${size#*x}" -le 64 ]]; then
            icon="$id"
            return 0
        fi
    done
    return 1
}
until_true find_icon || fail "no tray icon"
visible_count()
{
    xdotool search --onlyvisible --classname tarnwick 2>/dev/null | wc -l
}
before="$(visible_count)"
geometry "$icon"
xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click 3
until_true test "$(visible_count)" -gt "$before" || fail "the icon's menu did not open"
keys t
on_top()
{
    xprop -id "$main" _NET_WM_STATE 2>/dev/null | grep -q _NET_WM_STATE_ABOVE
}
until_true on_top || fail "the main window is not on top"

step "drag both windows by their title bars"
place()
{
    geometry "$1"
    echo "$X $Y $WIDTH $HEIGHT"
}
# The middle of WINDOW's title bar, where the window manager's frame stands above it.
title_bar()
{
    local top
    top="$(xprop -id "$1" _NET_FRAME_EXTENTS | awk -F', ' '{ print $3 }')"
    geometry "$1"
    x=$((X + WIDTH / 3))
    y=$((Y - ${top:-20} / 2))
}
moved()
{
    [[ "$(place "$1")" != "$2" ]]
}
drag()
{
    local window=$1 dx=$2 dy=$3 start x y
    start="$(place "$window")"
    title_bar "$window"
    xdotool mousemove "$x" "$y" mousedown 1
    for i in 1 2 3 4 5; do
        xdotool mousemove $((x + dx * i / 5)) $((y + dy * i / 5))
        sleep 0.05
    done
    xdotool mouseup 1
    until_true moved "$window" "$start" || fail "window $window did not move"
}
drag "$main" 70 45
drag "$preview" 40 160
position()
{
    geometry "$1"
    echo "$X,$Y"
}
main_place="$(position "$main")"
preview_place="$(position "$preview")"

step "back to the main window, then File, Exit"
title_bar "$main"
xdotool mousemove "$x" "$y" click 1
wait_active "$main"
keys alt+f x
until_true has_ended "$program_pid" || fail "the program did not end"
wait "$program_pid" || fail "the program ended with status $?"

step "start again: the windows stand where they stood, the preview open, the main window on top"
start_tarnwick
wait_main
wait_window '^Preview$'
preview="$found"
until_true on_top || fail "the main window is not on top any more"
[[ "$(position "$main")" == "$main_place" ]] || fail "the main window moved: $main_place, now $(position "$main")"
[[ "$(position "$preview")" == "$preview_place" ]] || fail "the preview moved: $preview_place, now $(position "$preview")"
echo "the preview, its place, the window's place and always on top came back"
