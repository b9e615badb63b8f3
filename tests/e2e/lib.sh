# What the end-to-end runs share (sourced by each of them). A run starts the real program under an X server of its
# own with a window manager, from a program folder of its own, with a scratch home, and drives it only with the
# mouse and the keyboard, as a player would; it checks the files the program writes and the windows it shows.
#
# The test registration gives these in the environment:
#   E2E_TARNWICK  the program              E2E_CLI     tarnwick-cli         E2E_LOCATE  tarnwick-e2e-locate
#   E2E_IMAGES    the sprite sheet folder  E2E_DATA    tests/data           E2E_OUT     where failed steps leave pictures
#   E2E_WAIT      seconds a wait lasts (20; the sanitizer build is slower)
#   E2E_RULES     the program's logging rules, when a failure needs more of its output (QT_LOGGING_RULES)
#
# Functions:
#   step TEXT                  names the step that a failure reports; its picture is named after it
#   fail TEXT                  saves a picture of the screen and the program's log, ends the run
#   until_true COMMAND...      polls COMMAND until it succeeds, for E2E_WAIT seconds
#   start_x [--tray]           an X server with openbox (and trayer) on a display nobody uses
#   make_program               the program folder, settings naming the game folder $work/game, the home
#   tarnwick ARGS...           runs the program in the home folder, as the player starts it
#   start_tarnwick ARGS...     starts the program in the background
#   locate [--search ID] NAME...  where each control is in the main window (the search dialog ID):
#                              at[NAME]="X Y" in that window (see locate.cpp)
#   click NAME [BUTTON]        clicks a located control
#   wait_window REGEX          waits for a visible window whose title matches; its id in $found
#   wait_active ID             waits until ID has the keyboard, and keeps it
#   wait_main [REGEX]          waits for the main window ($main) with that title, and the keyboard in it
#   has_ended PID              whether a process started here has ended
#   pixels NAME                a checksum of the few pixels around a located point, as the screen shows them
set -euo pipefail

readonly E2E_SKIP=77
needs()
{
    local tool
    for tool; do
        if ! command -v "$tool" >/dev/null 2>&1; then
            echo "SKIP: $tool is not installed (scripts/test installs it)"
            exit "$E2E_SKIP"
        fi
    done
}
needs Xvfb xdotool openbox xprop xdpyinfo xwininfo import

scenario="$(basename "$0" .sh)"
out="$E2E_OUT/$scenario"
rm -rf "$out"
mkdir -p "$out"
work="$(mktemp -d "${TMPDIR:-/tmp}/tarnwick-e2e.XXXXXX")"
pids=()
step_name="start"
main=""
found=""
declare -A at=() window_of=()

cleanup()
{
    local i
    for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
        kill "${pids[i]}" 2>/dev/null || true
    done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

step()
{
    step_name="$*"
    echo "-- $step_name"
}

fail()
{
    local picture
    picture="$out/$(printf '%s' "$step_name" | tr -cs 'A-Za-z0-9' '-').png"
    import -window root "$picture" >/dev/null 2>&1 || true
    [[ -f "$work/log" ]] && cp "$work/log" "$out/program.log"
    [[ -f "$work/openbox.log" ]] && cp "$work/openbox.log" "$out/openbox.log"
    { xprop -root _NET_ACTIVE_WINDOW; xwininfo -root -tree; } >"$out/windows.txt" 2>&1 || true
    echo "FAIL ($step_name): $*" >&2
    echo "the screen: $picture; the program's output: $out/program.log" >&2
    exit 1
}

until_true()
{
    local deadline=$((SECONDS + ${E2E_WAIT:-20}))
    until "$@"; do
        ((SECONDS < deadline)) || return 1
        sleep 0.1
    done
}

wm_running()
{
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}

start_x()
{
    local display pid
    # A display number no other X server holds (the tray test takes 200 to 699, the screenshots the first free
    # one): Xvfb takes the lock, so of two runs that picked the same number one ends at once and tries another.
    for _ in $(seq 40); do
        display=$((1000 + RANDOM % 8000))
        [[ -e /tmp/.X11-unix/X$display || -e /tmp/.X$display-lock ]] && continue
        # -noreset: without it the server starts afresh each time its last client leaves, and a client that comes
        # in that moment is turned away.
        Xvfb ":$display" -screen 0 1024x768x24 -nolisten tcp -noreset >/dev/null 2>&1 &
        pid=$!
        export DISPLAY=":$display"
        for _ in $(seq 100); do
            kill -0 "$pid" 2>/dev/null || break
            if xdpyinfo >/dev/null 2>&1; then
                pids+=("$pid")
                openbox --sm-disable >>"$work/openbox.log" 2>&1 &
                pids+=($!)
                until_true wm_running || fail "openbox did not start"
                if [[ "${1:-}" == --tray ]]; then
                    needs trayer
                    trayer --edge top --align right --widthtype pixel --width 120 --height 28 --transparent false \
                        >/dev/null 2>&1 &
                    pids+=($!)
                    until_true xdotool search --classname trayer >/dev/null 2>&1 || fail "trayer did not start"
                fi
                return 0
            fi
            sleep 0.1
        done
        kill "$pid" 2>/dev/null || true
    done
    fail "no X server would start"
}

make_program()
{
    mkdir -p "$work/prog" "$work/game/baseq3" "$work/home" "$work/run" "$work/tmp" "$work/bin"
    chmod 700 "$work/run"
    cp "$E2E_TARNWICK" "$work/prog/tarnwick"
    cp -r "$E2E_IMAGES" "$work/prog/Images"
    touch "$work/game/quake3.exe" # what makes the folder the game's
    printf '[Tarnwick]\r\nq3dir=%s\r\n' "$work/game" >"$work/prog/tarnwick.ini"
}

# The program as the player starts it; PATH holds nothing, so no desktop tool runs in the background.
tarnwick()
{
    (cd "$work/home" && exec env HOME="$work/home" XDG_RUNTIME_DIR="$work/run" XDG_CONFIG_HOME="$work/home/.config" \
        XDG_DATA_HOME="$work/home/.local/share" XDG_CACHE_HOME="$work/home/.cache" TMPDIR="$work/tmp" \
        PATH="$work/bin" QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=disabled: \
        QT_LOGGING_RULES="${E2E_RULES:-tarnwick.shell.info=true}" "$work/prog/tarnwick" "$@")
}

start_tarnwick()
{
    tarnwick "$@" >>"$work/log" 2>&1 &
    program_pid=$!
    pids+=("$program_pid")
}

has_ended()
{
    ! kill -0 "$1" 2>/dev/null
}

find_window()
{
    found="$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1)"
    [[ -n "$found" ]]
}

wait_window()
{
    until_true find_window "$1" || fail "no window titled like \"$1\""
}

# The place and size of WINDOW on the screen, as X Y WIDTH HEIGHT (xdotool's own counts the frame twice).
geometry()
{
    eval "$(xwininfo -id "$1" | awk '/Absolute upper-left X/ { print "X=" $4 } /Absolute upper-left Y/ { print "Y=" $4 }
        /Width:/ { print "WIDTH=" $2 } /Height:/ { print "HEIGHT=" $2 }')"
}

# Whether ID is the window manager's active window and holds the X server's keyboard focus.
is_active()
{
    [[ "$(xdotool getactivewindow 2>/dev/null)" == "$1" && "$(xdotool getwindowfocus 2>/dev/null)" == "$1" ]]
}

# Until ID has the keyboard and still has it a moment later: a window that comes and goes (the splash of a
# load) can take it between two looks.
wait_active()
{
    local held=0 deadline=$((SECONDS + ${E2E_WAIT:-20}))
    while ((held < 5)); do
        if is_active "$1"; then
            held=$((held + 1))
        else
            held=0
        fi
        ((SECONDS < deadline)) || fail "window $1 never kept the keyboard"
        sleep 0.1
    done
}

# The main window, once its title matches REGEX (any file: " - Tarnwick$") and it has the keyboard.
wait_main()
{
    wait_window "${1:- - Tarnwick$}"
    main="$found"
    wait_active "$main"
}

locate()
{
    local window="$main" mode=() name x y
    if [[ "$1" == --search ]]; then
        mode=(--search)
        window="$2"
        shift 2
    fi
    geometry "$window"
    while read -r name x y; do
        at[$name]="$x $y"
        window_of[$name]="$window"
    done < <("$E2E_LOCATE" "${mode[@]}" "${WIDTH}x${HEIGHT}" "$@" 2>>"$work/log" || true)
    for name; do
        [[ -n "${at[$name]:-}" ]] || fail "no place known for $name"
    done
}

click()
{
    local x y
    read -r x y <<<"${at[$1]}"
    xdotool mousemove --window "${window_of[$1]}" "$x" "$y" click "${2:-1}"
}

pixels()
{
    local x y
    read -r x y <<<"${at[$1]}"
    geometry "${window_of[$1]}"
    import -window root -crop "6x6+$((X + x - 3))+$((Y + y - 3))" -depth 8 rgb:- 2>/dev/null | md5sum
}

# Ctrl+S and the like: keys to the window that has the keyboard.
keys()
{
    xdotool key --delay 40 "$@"
}

type_text()
{
    xdotool type --delay 20 "$1"
}

# Waits until FILE holds the bytes of EXPECTED (a save may still be under way); shows the difference if never.
wait_same_file()
{
    if ! until_true cmp -s "$1" "$2"; then
        diff <(tr -d '\r' <"$2") <(tr -d '\r' <"$1") | head -n 20 >&2 || true
        fail "$1 differs from $2"
    fi
}
