#!/usr/bin/env bash
# The tray icon under a real X server: the program starts beside a notification area (trayer) and a window
# manager (openbox), its icon appears, the right button opens its menu, "Always On Top" sets the main
# window's state in place, and a double click on the icon brings the minimized window back (a single click
# does not).
#
#   tests/app/tray-x11.sh TARNWICK
set -euo pipefail

program="$1"
work="$(mktemp -d)"
pids=()
cleanup()
{
    for pid in "${pids[@]}"; do
        kill "$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap cleanup EXIT

fail()
{
    echo "FAIL: $*" >&2
    exit 1
}

# Waits up to twenty seconds for COMMAND to succeed: a loaded machine (the suite runs two tests at once, the
# sanitizer build is slow to start) takes its time.
until_true()
{
    for _ in $(seq 200); do
        if "$@"; then
            return 0
        fi
        sleep 0.1
    done
    return 1
}

export DISPLAY=":$((200 + RANDOM % 500))"
# -noreset: otherwise the server starts afresh when xdpyinfo leaves, and turns away whoever connects then.
Xvfb "$DISPLAY" -screen 0 1024x768x24 -nolisten tcp -noreset >/dev/null 2>&1 &
pids+=($!)
until_true xdpyinfo >/dev/null 2>&1 || fail "no X server on $DISPLAY"
openbox >/dev/null 2>&1 &
pids+=($!)
trayer --edge top --align right --widthtype pixel --width 120 --height 28 --transparent false >/dev/null 2>&1 &
pids+=($!)
until_true xdotool search --classname trayer >/dev/null 2>&1 || fail "trayer did not start"

# A program folder of its own whose settings name a game folder, so nothing asks for one.
mkdir -p "$work/prog" "$work/game/baseq3" "$work/home" "$work/run"
chmod 700 "$work/run"
touch "$work/game/quake3.exe"
cp "$program" "$work/prog/tarnwick"
printf '[Tarnwick]\r\nq3dir=%s\r\n' "$work/game" >"$work/prog/tarnwick.ini"
HOME="$work/home" XDG_RUNTIME_DIR="$work/run" XDG_DATA_HOME="$work/home/data" XDG_CONFIG_HOME="$work/home/config" \
    DBUS_SESSION_BUS_ADDRESS=disabled: QT_QPA_PLATFORM=xcb "$work/prog/tarnwick" >"$work/log" 2>&1 &
pids+=($!)

window=""
icon=""
find_windows()
{
    local id geometry
    window="$(xdotool search --name ' - Tarnwick$' 2>/dev/null | head -n 1)"
    icon=""
    for id in $(xdotool search --classname tarnwick 2>/dev/null); do
        geometry="$(xdotool getwindowgeometry "$id" | awk '/Geometry/ { print $2 }')"
        if [[ "${geometry%x*}" -le 64 && "${geometry#*x}" -le 64 ]]; then
            icon="$id"
        fi
    done
    [[ -n "$window" && -n "$icon" ]]
}
until_true find_windows || fail "no main window or no tray icon: $(cat "$work/log")"
eval "$(xdotool getwindowgeometry --shell "$icon")"
icon_x=$((X + WIDTH / 2))
icon_y=$((Y + HEIGHT / 2))

visible_count()
{
    xdotool search --onlyvisible --classname tarnwick 2>/dev/null | wc -l
}
state_is()
{
    xprop -id "$window" WM_STATE 2>/dev/null | grep -q "window state: $1"
}
net_state_has_above()
{
    xprop -id "$window" _NET_WM_STATE 2>/dev/null | grep -q _NET_WM_STATE_ABOVE
}

# The menu: one more visible window of the program, below the icon; its second item is Always On Top.
before="$(visible_count)"
xdotool mousemove "$icon_x" "$icon_y" click 3
until_true test "$(visible_count)" -gt "$before" || fail "the right button opened no menu"
menu="$(xdotool search --onlyvisible --classname tarnwick | while read -r id; do
    if [[ "$id" != "$window" && "$id" != "$icon" ]]; then
        echo "$id"
    fi
done | head -n 1)"
eval "$(xdotool getwindowgeometry --shell "$menu")"
place="$(xdotool getwindowgeometry "$window" | tr '\n' ' ')"
xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click 1
until_true net_state_has_above || fail "Always On Top left the window's state alone"
[[ "$(xdotool getwindowgeometry "$window" | tr '\n' ' ')" == "$place" ]] || fail "the window moved: $place"

# Minimized, a single click leaves it so; a double click brings it back.
xdotool windowminimize "$window"
until_true state_is Iconic || fail "the window manager did not minimize the window"
xdotool mousemove "$icon_x" "$icon_y" click 1
sleep 0.8
state_is Iconic || fail "a single click restored the window"
xdotool mousemove "$icon_x" "$icon_y" click --repeat 2 --delay 60 1
until_true state_is Normal || fail "a double click did not restore the window"
echo "tray icon, menu, always on top and restore work under X"
