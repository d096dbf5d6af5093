# shellcheck shell=bash
# A user at the real editor, through xdotool on an X server of the script's own without a window
# manager, so that windows sit where Qt puts them; every wait ends in a failure, not a hang.
readonly AppTitle="Kestrix: Levelset Editor" LevelLeft=138 PaletteLeft=666 Top=34 # client pixels

fail() {
    echo "FAIL: $*" >&2
    [ -z "${wid:-}" ] || import -window root "$PWD/e2e-failure.png" || true
    exit 1
}

# The scratch folder has capitals: a save lower-cases the file name, never a folder.
on_own_display() {
    [ -n "${KST_E2E_DISPLAY:-}" ] ||
        exec env KST_E2E_DISPLAY=1 xvfb-run -a -s "-screen 0 1280x1024x24" bash "$0" "$@" </dev/null
    export QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR
    work=$(mktemp -d "${TMPDIR:-/tmp}/KstE2E.XXXXXX") pid=""
    XDG_RUNTIME_DIR=$(mktemp -d "$work/runtime.XXXX")
    trap '[ -z "$pid" ] || kill "$pid" 2>/dev/null; rm -rf "$work"' EXIT
}

# wait_for SECONDS WHAT COMMAND...
wait_for() {
    local deadline=$((SECONDS + $1)) what=$2
    shift 2
    until "$@"; do
        [ "$SECONDS" -lt "$deadline" ] || fail "timed out waiting for $what"
        sleep 0.05
    done
}
windows_shown() { [ "$({ xdotool search --onlyvisible --pid "$pid" || true; } | wc -l)" -eq "$1" ]; }
window_named() { xdotool search --onlyvisible --name "$1" >/dev/null 2>&1; }
# The title names PATH, letter case included (xdotool's search ignores case).
titled() { [ "$(xdotool getwindowname "$wid")" = "[$1] - $AppTitle" ]; }

# The main window, 803 pixels wide with a menu bar over its 572-pixel client area.
start_editor() {
    "$1" &
    pid=$!
    wait_for 30 "the main window" window_named "\] - $AppTitle\$"
    wid=$(xdotool search --onlyvisible --name "\] - $AppTitle\$" | head -1)
    local X Y WIDTH HEIGHT SCREEN WINDOW
    eval "$(xdotool getwindowgeometry --shell "$wid")"
    menuBar=$((HEIGHT - 572)) windowX=$X windowY=$((Y + HEIGHT - 572))
    [ "$WIDTH" = 803 ] && [ "$HEIGHT" -gt 582 ] && [ "$HEIGHT" -lt 632 ] || fail "the window is ${WIDTH}x$HEIGHT"
}
expect_editor_ends() {
    wait_for 15 "the editor to end" eval "! kill -0 $pid 2>/dev/null"
    wait "$pid" || fail "the editor ended with status $?"
    pid=""
}

# To a point of the client area ("mousemove --sync" waits forever when the pointer is there).
point_at() {
    local X Y SCREEN WINDOW
    eval "$(xdotool getmouselocation --shell)"
    [ "$X,$Y" = "$((windowX + $1)),$((windowY + $2))" ] || xdotool mousemove --sync $((windowX + $1)) $((windowY + $2))
}
point_at_level() { point_at $((LevelLeft + 16 * $1 + 8)) $((Top + 16 * $2 + 8)); }
point_at_tile() { point_at $((PaletteLeft + 16 * ($1 % 8) + 8)) $((Top + 16 * ($1 / 8) + 8)); }
# A cell's inside, 2 pixels in from each edge that markers use, against a palette tile's.
cell_print() { import -window "$wid" -crop 12x12+$(($1 + 2))+$((menuBar + $2 + 2)) +repage rgb:- | md5sum; }
level_shows() {
    [ "$(cell_print $((LevelLeft + 16 * $1)) $((Top + 16 * $2)))" = \
        "$(cell_print $((PaletteLeft + 16 * ($3 % 8))) $((Top + 16 * ($3 / 8))))" ]
}
level_differs() { ! level_shows "$@"; }
wait_level_shows() { wait_for 20 "cell ($1, $2) to show tile $3" level_shows "$1" "$2" "$3"; }

keys() { xdotool windowfocus --sync "$wid" key --delay 30 "$@"; }
click_at() { point_at "$1" "$2" && xdotool click 1; }
pick_tile() { point_at_tile "$1" && xdotool click 1; }
paint() { point_at_level "$1" "$2" && xdotool click 1 && wait_level_shows "$@"; }
popup_choose() {
    xdotool click 3
    wait_for 20 "the popup menu" windows_shown 2
    xdotool key "$1"
    wait_for 20 "the popup menu to close" windows_shown 1
}
type_into() { click_at "$1" "$2" && xdotool key --delay 30 ctrl+a type --delay 30 "$3"; }
focus_on() {
    wait_for 15 "the \"$1\" window" window_named "^$1\$"
    xdotool windowfocus --sync "$(xdotool search --onlyvisible --name "^$1\$" | head -1)"
}
file_dialog_enter() {
    focus_on "$1"
    xdotool key --delay 30 ctrl+a type --delay 20 "$2"
    xdotool key Return
}
answer_message() {
    focus_on "$AppTitle"
    xdotool key "$1"
    wait_for 15 "the message box to close" eval "! window_named '^$AppTitle\$'"
}

# same_bytes EXPECTED ACTUAL WHAT
same_bytes() {
    cmp -s "$1" "$2" || fail "$3:"$'\n'"$(diff <(od -An -tu1 -v -w16 "$1") <(od -An -tu1 -v -w16 "$2"))"
}
read_bytes() { od -An -tu1 -v -w1 "$1" | tr -d ' '; } # in decimal, one a line
write_bytes() { printf '%b' "$(printf '\\x%02x' "${@:2}")" >"$1"; }
