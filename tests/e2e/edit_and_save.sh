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
# shellcheck source-path=SCRIPTDIR source=x_session.sh
source "$(dirname "$0")/x_session.sh"
on_own_display "$@"

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

# --- the session ---------------------------------------------------------------------------

start_editor "$editor"

# Palette tiles used below must look different, or the waits could not tell them apart.
for tile in 5 89 177; do
    [ "$(tile_print 0)" != "$(tile_print "$tile")" ] || fail "tiles 0 and $tile are not told apart"
done

# Level 1. A drag paints each cell it enters; jumping from column 3 to 6 skips 4 and 5.
pick_tile 89
drag_paint 89 0,2 1,2 2,2 3,2 6,2
if level_shows 4 2 89 || level_shows 5 2 89; then fail "the drag painted the cells it jumped over"; fi

pick_tile 5
point_at_tile 5
popup_choose p # "Set as Block to &Put Type"

# Column 12 lies outside the 12-wide level: the click writes nothing there.
point_at_level 12 0
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

point_at_level 3 4
popup_choose s # "Set as &Start Position"
point_at_level 10 6
popup_choose f # "Set as &Finish Position"

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
file_dialog_enter "Save As" "$work/abc.kst"
answer_message "the invalid-name message" Return
file_dialog_enter "Save As" "$work/ZKSTLE2E.KST"

saved="$work/zkstle2e.kst"
wait_for 15 "the editor to write $saved" test -s "$saved"
wait_for 15 "the title to name the lower-case file" titled "$saved"
[ "$(find "$work" -maxdepth 1 -type f)" = "$saved" ] ||
    fail "saving wrote other files than $saved: $(ls -A "$work")"

put_text "KST0E2E"
put 2 0 0
put_text "ABC12 "
for _ in 2 3 4 5 6 7; do put_text "      "; done
#         h  w  obj time put  take putT takeT lvlT alien finish start
put_level 9 14 0 120 1 0 2 0 5 0 1 3 10 6 3 4 -- \
    0,2=89 1,2=89 2,2=89 3,2=89 6,2=89 11,7=5 13,0=5 0,8=5
put_level 8 12 7 99 1 0 2 0 89 0 0 4 11 7 0 0 -- 5,5=177
write_bytes "$work/expected.kst" "${expected[@]}"
same_bytes "$work/expected.kst" "$saved" "the saved levelset differs from the expected bytes"

# Exit, Cancel on the prompt: the editor keeps running.
keys alt+f x
answer_message "the save prompt" Escape
kill -0 "$pid" 2>/dev/null || fail "Cancel on the save prompt ended the editor"
titled "$saved" || fail "Cancel on the save prompt closed the main window"

# Exit, No on the prompt: the editor ends without writing.
keys alt+f x
answer_message "the save prompt" n
expect_editor_ends
same_bytes "$work/expected.kst" "$saved" "No on the save prompt changed the saved file"

echo "PASS: edited, saved $(stat -c %s "$saved") bytes as expected, closed"
