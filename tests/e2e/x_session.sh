# shellcheck shell=bash
# Shared by the end-to-end scenarios: runs the scenario on its own X server, starts the editor,
# and offers the user's actions (pointer, keys, popups, dialogs) with waits that end in a
# clear failure instead of a hang. Source it from a scenario script, then call on_own_display.

# Re-runs the calling script under xvfb-run unless it already runs there. No window manager on
# purpose: window positions are then exactly where Qt puts them.
on_own_display() {
    if [ -n "${KST_E2E_DISPLAY_READY:-}" ]; then
        prepare_session
        return 0
    fi
    local tool
    for tool in xvfb-run xauth xdotool import; do
        command -v "$tool" >/dev/null || {
            echo "FAIL: $tool is not installed (scripts/ensure-deps installs it)" >&2
            exit 1
        }
    done
    exec env KST_E2E_DISPLAY_READY=1 xvfb-run -a -s "-screen 0 1280x1024x24" \
        bash "$0" "$@" </dev/null
}

readonly AppTitle="Kestrix: Levelset Editor"
readonly ClientHeight=572
# Inner top-left corners of the level view and the palette, in client pixels.
readonly LevelLeft=138 LevelTop=34 PaletteLeft=666 PaletteTop=34

# A scratch folder, removed at the end with the editor if it still runs. Its name has capitals:
# saving lower-cases the file name, never a folder.
prepare_session() {
    export QT_QPA_PLATFORM=xcb
    work=$(mktemp -d "${TMPDIR:-/tmp}/KstE2E.XXXXXX")
    mkdir -m 700 "$work/runtime"
    export XDG_RUNTIME_DIR="$work/runtime"
    pid=""
    trap end_session EXIT
}
end_session() {
    if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then
        kill "$pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}

fail() {
    echo "FAIL: $*" >&2
    local shot
    shot="$PWD/$(basename "$0" .sh)-failure.png"
    import -window root "$shot" 2>/dev/null && echo "screen at the failure: $shot" >&2
    exit 1
}

# wait_for SECONDS WHAT COMMAND...: polls COMMAND until it succeeds.
wait_for() {
    local seconds=$1 what=$2
    shift 2
    local deadline=$((SECONDS + seconds))
    until "$@"; do
        [ "$SECONDS" -lt "$deadline" ] || fail "timed out after ${seconds}s waiting for $what"
        sleep 0.05
    done
}

visible_window_count() {
    { xdotool search --onlyvisible --pid "$pid" 2>/dev/null || true; } | wc -l
}
windows_shown() { [ "$(visible_window_count)" -eq "$1" ]; }
window_named() { xdotool search --onlyvisible --name "$1" >/dev/null 2>&1; }
no_window_named() { ! window_named "$1"; }
editor_gone() { ! kill -0 "$pid" 2>/dev/null; }

# --- geometry ------------------------------------------------------------------------------

# start_editor PATH-TO-KstEdit
start_editor() {
    # The file dialog starts in the program's folder; the scenarios type full paths instead.
    "$1" &
    pid=$!
    wait_for 30 "the main window" window_named "\] - $AppTitle\$"
    wid=$(xdotool search --onlyvisible --name "\] - $AppTitle\$" | head -1)
    local X Y WIDTH HEIGHT SCREEN WINDOW
    eval "$(xdotool getwindowgeometry --shell "$wid")"
    [ "$WIDTH" -eq 803 ] || fail "main window is $WIDTH pixels wide, not 803"
    menuBar=$((HEIGHT - ClientHeight))
    [ "$menuBar" -gt 10 ] && [ "$menuBar" -lt 60 ] ||
        fail "main window is $HEIGHT pixels high: no room for a menu bar over the 572-pixel client area"
    windowX=$X
    windowY=$Y
    xdotool windowfocus --sync "$wid"
}

# Moves the pointer to a screen position. "mousemove --sync" waits for the pointer to move,
# which it never does when it is there already.
pointer_to() {
    local X Y SCREEN WINDOW
    eval "$(xdotool getmouselocation --shell)"
    [ "$X,$Y" = "$1,$2" ] || xdotool mousemove --sync "$1" "$2"
}
# To the centre of a window-relative cell; of a level cell; of a palette tile; to a point of
# the client area.
point_at() { pointer_to $((windowX + $1 + 8)) $((windowY + $2 + 8)); }
point_at_level() { point_at $((LevelLeft + 16 * $1)) $((menuBar + LevelTop + 16 * $2)); }
point_at_tile() { point_at $((PaletteLeft + 16 * ($1 % 8))) $((menuBar + PaletteTop + 16 * ($1 / 8))); }
point_at_client() { pointer_to $((windowX + $1)) $((windowY + menuBar + $2)); }

# Fingerprint of the inside of a cell whose window-relative top-left is X Y, 2 pixels in from
# each edge so that no marker outline shows in it.
cell_print() { import -window "$wid" -crop 12x12+$(($1 + 2))+$(($2 + 2)) +repage rgb:- | md5sum; }
level_print() { cell_print $((LevelLeft + 16 * $1)) $((menuBar + LevelTop + 16 * $2)); }
tile_print() { cell_print $((PaletteLeft + 16 * ($1 % 8))) $((menuBar + PaletteTop + 16 * ($1 / 8))); }

level_shows() { [ "$(level_print "$1" "$2")" = "$(tile_print "$3")" ]; }
level_differs() { [ "$(level_print "$1" "$2")" != "$(tile_print "$3")" ]; }
wait_level_shows() { wait_for 20 "cell ($1, $2) to show tile $3" level_shows "$1" "$2" "$3"; }

# --- user actions --------------------------------------------------------------------------

keys() {
    xdotool windowfocus --sync "$wid"
    xdotool key --delay 30 "$@"
}

pick_tile() {
    point_at_tile "$1"
    xdotool click 1
}

# Left click on a cell inside the level; waits until the view shows the painted tile.
paint() {
    point_at_level "$1" "$2"
    xdotool click 1
    wait_level_shows "$1" "$2" "$3"
}

# Left-button drag through the listed cells "x,y"; each is painted before the pointer moves
# on, so no movement is merged with the next.
drag_paint() {
    local tile=$1 cell
    shift
    point_at_level "${1%,*}" "${1#*,}"
    xdotool mousedown 1
    for cell in "$@"; do
        point_at_level "${cell%,*}" "${cell#*,}"
        wait_level_shows "${cell%,*}" "${cell#*,}" "$tile"
    done
    xdotool mouseup 1
}

# Right click where the pointer is, then an item of the popup by its access key.
popup_choose() {
    local key=$1
    xdotool click 3
    wait_for 20 "the popup menu" windows_shown 2
    xdotool key "$key"
    wait_for 20 "the popup menu to close" windows_shown 1
}

# Replaces a text field's contents by typing.
type_into() {
    point_at_client "$1" "$2"
    xdotool click 1
    xdotool key --delay 30 ctrl+a
    xdotool type --delay 30 "$3"
}

# file_dialog_enter TITLE PATH: types PATH into the file-name field of the Qt file dialog
# named TITLE, which has the focus when it opens, and accepts it.
file_dialog_enter() {
    wait_for 15 "the \"$1\" dialog" window_named "^$1\$"
    xdotool windowfocus --sync "$(xdotool search --onlyvisible --name "^$1\$" | head -1)"
    xdotool key --delay 30 ctrl+a
    xdotool type --delay 20 "$2"
    xdotool key Return
}

# answer_message WHAT KEY: waits for a message box with the application's title, presses KEY
# in it and waits until it has closed.
answer_message() {
    wait_for 15 "$1" window_named "^$AppTitle\$"
    xdotool windowfocus --sync "$(xdotool search --onlyvisible --name "^$AppTitle\$" | head -1)"
    xdotool key "$2"
    wait_for 15 "$1 to close" no_window_named "^$AppTitle\$"
}

# The main window's title names PATH, letter case included (xdotool's search ignores case).
titled() { [ "$(xdotool getwindowname "$wid")" = "[$1] - $AppTitle" ]; }

# The editor has ended, by itself and with status 0.
expect_editor_ends() {
    wait_for 15 "the editor to end" editor_gone
    local status=0
    wait "$pid" || status=$?
    pid=""
    [ "$status" -eq 0 ] || fail "the editor ended with status $status"
}

# same_bytes EXPECTED ACTUAL WHAT: fails showing the differing 16-byte lines in decimal.
same_bytes() {
    cmp -s "$1" "$2" && return 0
    echo "expected ($(stat -c %s "$1") bytes) | written ($(stat -c %s "$2") bytes):" >&2
    diff <(od -An -tu1 -v -w16 "$1") <(od -An -tu1 -v -w16 "$2") >&2 || true
    fail "$3"
}

# write_bytes FILE BYTE...: writes the bytes, given in decimal, as FILE.
write_bytes() {
    local file=$1 escaped="" byte
    shift
    for byte in "$@"; do escaped+=$(printf '\\x%02x' "$byte"); done
    printf '%b' "$escaped" >"$file"
}

# read_bytes FILE: prints FILE's bytes in decimal, one a line.
read_bytes() { od -An -tu1 -v -w1 "$1" | tr -d ' '; }
