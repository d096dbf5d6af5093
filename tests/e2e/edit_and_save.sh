#!/usr/bin/env bash
# Drives the real editor on an X server the way a user would: paints with the mouse, resizes,
# sets positions and types through the popup menus and the panel, adds a level, saves through
# the Qt file dialog, and compares the file with bytes built here from the same steps. Then
# closes the editor through File > Exit, first cancelling and then declining the save prompt.
#
# Usage: edit_and_save.sh PATH-TO-KstEdit
# Needs xvfb-run, xdotool and ImageMagick's import; starts its own X server.
set -euo pipefail

editor=${1:?usage: edit_and_save.sh PATH-TO-KstEdit}

if [ -z "${KST_E2E_DISPLAY_READY:-}" ]; then
    for tool in xvfb-run xauth xdotool import; do
        command -v "$tool" >/dev/null || {
            echo "FAIL: $tool is not installed (scripts/ensure-deps installs it)" >&2
            exit 1
        }
    done
    # No window manager on purpose: window positions are then exactly where Qt puts them.
    exec env KST_E2E_DISPLAY_READY=1 xvfb-run -a -s "-screen 0 1280x1024x24" \
        bash "$0" "$@" </dev/null
fi

export QT_QPA_PLATFORM=xcb
readonly AppTitle="Kestrix: Levelset Editor"
readonly ClientHeight=572
# Inner top-left corners of the level view and the palette, in client pixels.
readonly LevelLeft=138 LevelTop=34 PaletteLeft=666 PaletteTop=34

# The folder name has capitals: saving lower-cases the file name, never a folder.
work=$(mktemp -d "${TMPDIR:-/tmp}/KstE2E.XXXXXX")
mkdir -m 700 "$work/runtime"
export XDG_RUNTIME_DIR="$work/runtime"
pid=""
cleanup() {
    if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then
        kill "$pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "FAIL: $*" >&2
    import -window root "$PWD/e2e-failure.png" 2>/dev/null &&
        echo "screen at the failure: $PWD/e2e-failure.png" >&2
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

start_editor() {
    # The file dialog starts in the program's folder; the test types full paths instead.
    "$editor" &
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

# Window-relative top-left of the 16 x 16 cell of a level cell or of a palette tile.
level_cell() { echo $((LevelLeft + 16 * $1)) $((menuBar + LevelTop + 16 * $2)); }
palette_cell() { echo $((PaletteLeft + 16 * ($1 % 8))) $((menuBar + PaletteTop + 16 * ($1 / 8))); }

# Moves the pointer to a screen position. "mousemove --sync" waits for the pointer to move,
# which it never does when it is there already.
pointer_to() {
    local X Y SCREEN WINDOW
    eval "$(xdotool getmouselocation --shell)"
    [ "$X,$Y" = "$1,$2" ] || xdotool mousemove --sync "$1" "$2"
}
# To the centre of a window-relative cell; to a point of the client area.
point_at() { pointer_to $((windowX + $1 + 8)) $((windowY + $2 + 8)); }
point_at_client() { pointer_to $((windowX + $1)) $((windowY + menuBar + $2)); }

# Fingerprint of the inside of a cell, 2 pixels in from each edge so that no marker outline
# shows in it.
cell_print() { import -window "$wid" -crop 12x12+$(($1 + 2))+$(($2 + 2)) +repage rgb:- | md5sum; }

tile_print() { cell_print $(palette_cell "$1"); }
level_shows() { [ "$(cell_print $(level_cell "$1" "$2"))" = "$(tile_print "$3")" ]; }
level_differs() { [ "$(cell_print $(level_cell "$1" "$2"))" != "$(tile_print "$3")" ]; }
wait_level_shows() { wait_for 20 "cell ($1, $2) to show tile $3" level_shows "$1" "$2" "$3"; }

# --- user actions --------------------------------------------------------------------------

keys() {
    xdotool windowfocus --sync "$wid"
    xdotool key --delay 30 "$@"
}

pick_tile() {
    point_at $(palette_cell "$1")
    xdotool click 1
}

# Left click on a cell inside the level; waits until the view shows the painted tile.
paint() {
    point_at $(level_cell "$1" "$2")
    xdotool click 1
    wait_level_shows "$1" "$2" "$3"
}

# Left-button drag through the listed cells "x,y"; each is painted before the pointer moves
# on, so no movement is merged with the next.
drag_paint() {
    local tile=$1 cell
    shift
    point_at $(level_cell "${1%,*}" "${1#*,}")
    xdotool mousedown 1
    for cell in "$@"; do
        point_at $(level_cell "${cell%,*}" "${cell#*,}")
        wait_level_shows "${cell%,*}" "${cell#*,}" "$tile"
    done
    xdotool mouseup 1
}

# Right click on a level cell or palette tile, then an item of the popup by its access key.
popup_choose() {
    local key=$1
    shift
    point_at "$@"
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

# Types a path into the "Save As" dialog's file-name field, which has the focus when it opens.
save_as_dialog_enter() {
    wait_for 15 'the "Save As" dialog' window_named '^Save As$'
    xdotool windowfocus --sync "$(xdotool search --onlyvisible --name '^Save As$' | head -1)"
    xdotool key --delay 30 ctrl+a
    xdotool type --delay 20 "$1"
    xdotool key Return
}

# --- the expected file, built byte by byte -------------------------------------------------

expected=()
put() { expected+=("$@"); }
put_text() {
    local text=$1 i code
    for ((i = 0; i < ${#text}; i++)); do
        printf -v code '%d' "'${text:i:1}"
        expected+=("$code")
    done
}
# put_level HEADER-BYTES... -- CELLS: cells as "x,y=tile", all others tile 0; rows are
# stored one after the other, each from column 0.
put_level() {
    local header=() height width x y
    while [ "$1" != "--" ]; do
        header+=("$1")
        shift
    done
    shift
    height=${header[0]}
    width=${header[1]}
    put "${header[@]}"
    local -A tiles=()
    local cell
    for cell in "$@"; do tiles[${cell%=*}]=${cell#*=}; done
    for ((y = 0; y < height; y++)); do
        for ((x = 0; x < width; x++)); do
            put "${tiles[$x,$y]:-0}"
        done
    done
}
write_expected() {
    local escaped="" byte
    for byte in "${expected[@]}"; do escaped+=$(printf '\\x%02x' "$byte"); done
    printf '%b' "$escaped" >"$1"
}

# --- the session ---------------------------------------------------------------------------

start_editor

# Palette tiles used below must look different, or the waits could not tell them apart.
[ "$(tile_print 0)" != "$(tile_print 89)" ] && [ "$(tile_print 0)" != "$(tile_print 5)" ] &&
    [ "$(tile_print 0)" != "$(tile_print 177)" ] || fail "tiles 0, 5, 89 and 177 are not told apart"

# Level 1. A drag paints each cell it enters; jumping from column 3 to 6 skips 4 and 5.
pick_tile 89
drag_paint 89 0,2 1,2 2,2 3,2 6,2
level_differs 4 2 89 && level_differs 5 2 89 || fail "the drag painted the cells it jumped over"

pick_tile 5
popup_choose p $(palette_cell 5) # "Set as Block to &Put Type"

# Column 12 lies outside the 12-wide level: the click writes nothing there.
point_at $(level_cell 12 0)
xdotool click 1
paint 11 7 5

keys F2 F2 # Increase Width twice: 14 columns
wait_level_shows 12 0 0
wait_level_shows 13 0 0
paint 13 0 5
keys F1 # Decrease Width hides column 13; Increase Width shows its tile again
wait_for 20 "column 13 to leave the level" level_differs 13 0 5
keys F2
wait_level_shows 13 0 5

keys F4 # Increase Height: 9 rows
wait_level_shows 0 8 0
paint 0 8 5

popup_choose s $(level_cell 3 4)  # "Set as &Start Position"
popup_choose f $(level_cell 10 6) # "Set as &Finish Position"

type_into 96 417 120 # txtTime
point_at_client 40 160 # optHatchery
xdotool click 1

# Level 2: added, then shown.
keys F6 F8
wait_level_shows 0 2 0

type_into 96 369 abc123 # txtPasscode takes 5 typed characters
type_into 96 393 7      # txtObjectives
point_at_client 40 288  # optStrong
xdotool click 1

pick_tile 177
pick_tile 178 # grey and inert: tile 177 stays selected
paint 5 5 177

# Save: an invalid name is refused with a message and the dialog opens again.
keys ctrl+s
save_as_dialog_enter "$work/abc.kst"
wait_for 15 "the invalid-name message" window_named "^$AppTitle\$"
xdotool windowfocus --sync "$(xdotool search --onlyvisible --name "^$AppTitle\$" | head -1)"
xdotool key Return
wait_for 15 "the invalid-name message to close" no_window_named "^$AppTitle\$"
save_as_dialog_enter "$work/ZKSTLE2E.KST"

saved="$work/zkstle2e.kst"
wait_for 15 "the editor to write $saved" test -s "$saved"
wait_for 15 "the title to name the saved file" \
    window_named "^\[${work//./\\.}/zkstle2e\.kst\] - $AppTitle\$"
[ ! -e "$work/abc.kst" ] || fail "the refused name abc.kst was written"
[ "$(find "$work" -maxdepth 1 -type f | wc -l)" -eq 1 ] || fail "saving wrote more than one file: $(ls -A "$work")"

put_text "KST0E2E"
put 2 0 0
put_text "ABC12 "
for slot in 2 3 4 5 6 7; do put_text "      "; done
#         h  w  obj time put  take putT takeT lvlT alien finish start
put_level 9 14 0 120 1 0 2 0 5 0 1 3 10 6 3 4 -- \
    0,2=89 1,2=89 2,2=89 3,2=89 6,2=89 11,7=5 13,0=5 0,8=5
put_level 8 12 7 99 1 0 2 0 89 0 0 4 11 7 0 0 -- 5,5=177
write_expected "$work/expected.kst"

if ! cmp -s "$work/expected.kst" "$saved"; then
    echo "expected ($(stat -c %s "$work/expected.kst") bytes) | written ($(stat -c %s "$saved") bytes):" >&2
    diff <(od -An -tu1 -v -w16 "$work/expected.kst") <(od -An -tu1 -v -w16 "$saved") >&2 || true
    fail "the saved levelset differs from the expected bytes"
fi
cp "$saved" "$work/saved.kst"

# Exit, Cancel on the prompt: the editor keeps running.
keys alt+f x
wait_for 15 "the save prompt" window_named "^$AppTitle\$"
xdotool key Escape
wait_for 15 "the save prompt to close" no_window_named "^$AppTitle\$"
kill -0 "$pid" 2>/dev/null || fail "Cancel on the save prompt ended the editor"
window_named "\] - $AppTitle\$" || fail "Cancel on the save prompt closed the main window"

# Exit, No on the prompt: the editor ends without writing.
keys alt+f x
wait_for 15 "the save prompt" window_named "^$AppTitle\$"
xdotool key n
wait_for 15 "the editor to end" editor_gone
status=0
wait "$pid" || status=$?
pid=""
[ "$status" -eq 0 ] || fail "the editor ended with status $status"
cmp -s "$saved" "$work/saved.kst" || fail "No on the save prompt changed the saved file"

echo "PASS: edited, saved $(stat -c %s "$saved") bytes as expected, closed"
