#!/usr/bin/env bash
# The real editor as a user drives it, each saved file compared byte for byte with what the steps
# must give. Usage: editor.sh KstEdit kstool LEVELSET.json (its levels 24 x 16 and 12 x 8)
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=x_session.sh
source "$(dirname "$0")/x_session.sh"
on_own_display "$@"

start_editor "$1"
for tile in 5 89 177; do level_differs 0 0 "$tile" || fail "tile $tile looks like the floor"; done
# Level 1. A drag paints each cell it enters; jumping from column 3 to 6 skips 4 and 5.
pick_tile 89
point_at_level 0 2
xdotool mousedown 1
for x in 0 1 2 3 6; do point_at_level "$x" 2 && wait_level_shows "$x" 2 89; done # each before the next move
xdotool mouseup 1
if level_shows 4 2 89 || level_shows 5 2 89; then fail "the drag painted the cells it jumped over"; fi
pick_tile 5
popup_choose p # Set as Block to Put Type
point_at_level 12 0 && xdotool click 1 # outside the 12-wide level: nothing is written
paint 11 7 5
keys F2 F2 # Increase Width twice: 14 columns
wait_level_shows 13 0 0
paint 13 0 5
keys F1 # Decrease Width hides column 13, Increase Width shows its tile again
wait_for 20 "column 13 to leave the level" level_differs 13 0 5
keys F2
wait_level_shows 13 0 5
keys F4 # Increase Height: 9 rows
wait_level_shows 0 8 0
paint 0 8 5
point_at_level 3 4 && popup_choose s  # Set as Start Position
point_at_level 10 6 && popup_choose f # Set as Finish Position
type_into 96 417 120 # txtTime
click_at 40 160      # optHatchery
# Level 2, added and shown.
keys F6 F8
wait_level_shows 0 2 0
type_into 96 369 abc123 # txtPasscode takes 5 characters
type_into 96 393 7      # txtObjectives
click_at 40 288         # optStrong
pick_tile 177
pick_tile 178 # grey and inert: 177 stays selected
paint 5 5 177

# An invalid name is refused with a message and the dialog opens again.
keys ctrl+s
file_dialog_enter "Save As" "$work/abc.kst"
answer_message Return
file_dialog_enter "Save As" "$work/ZKSTLE2E.KST"
saved="$work/zkstle2e.kst"
wait_for 15 "the editor to write $saved" test -s "$saved"
wait_for 15 "the title to name the lower-case file" titled "$saved"
[ "$(find "$work" -maxdepth 1 -type f)" = "$saved" ] || fail "the save wrote other files: $(ls -A "$work")"
# The tag, count, reserved bytes and passcodes; then each level's header and cells row by row.
mapfile -t expected < <(printf 'KST0E2E\2\0\0ABC12 %36s' '' | read_bytes /dev/stdin)
level() { expected+=("$@") && for ((i = 0; i < $1 * $2; i++)); do expected+=(0); done; }
#     height width objectives time put take putType takeType levelType alienType finish start
level 9 14 0 120 1 0 2 0 5 0 1 3 10 6 3 4 # from byte 52, its cells from 68
level 8 12 7 99 1 0 2 0 89 0 0 4 11 7 0 0 # from byte 194, its cells from 210
for x in 0 1 2 3 6; do expected[68 + 14 * 2 + x]=89; done
expected[68 + 14 * 7 + 11]=5 expected[68 + 13]=5 expected[68 + 14 * 8]=5 expected[210 + 12 * 5 + 5]=177
write_bytes "$work/expected.kst" "${expected[@]}"
same_bytes "$work/expected.kst" "$saved" "the saved levelset differs from the expected bytes"
keys alt+f x
answer_message Escape # Cancel: the editor keeps running
titled "$saved" || fail "Cancel on the save prompt closed the main window"
keys alt+f x
answer_message n # No: the editor ends without writing
expect_editor_ends
same_bytes "$work/expected.kst" "$saved" "No on the save prompt changed the saved file"

# A capital name with a lower-case namesake beside it: Save rewrites the file that was opened.
opened="$work/Levels/ZKSTLDMO.KST" namesake="$work/Levels/zkstldmo.kst"
mkdir "$work/Levels"
"$2" import "$3" -o "$namesake" >/dev/null
mv "$namesake" "$opened"
cp "$opened" "$work/original.kst"
echo "another levelset" | tee "$namesake" >"$work/namesake"
start_editor "$1"
keys ctrl+o
answer_message n
file_dialog_enter "Open" "$opened"
wait_for 15 "the title to name the opened file" titled "$opened"
wait_level_shows 9 2 73 # the alien in the first room
inode=$(stat -c %i "$opened")
keys ctrl+s # at once, without a dialog: a new file in the opened one's place
wait_for 15 "the editor to rewrite $opened" test "$(stat -c %i "$opened")" != "$inode"
! window_named '^Save As$' && titled "$opened" || fail "Save of an opened levelset asked for a name"
same_bytes "$work/original.kst" "$opened" "saving an opened levelset unchanged altered its bytes"
keys F8                 # level 2
wait_level_shows 2 2 69 # its alien hole
keys alt+t m w          # Right Mouse Button > Random Wall Tile
point_at_level 1 3
xdotool mousedown 3
for x in 1 2 3 4; do point_at_level "$x" 3 && wait_for 20 "a wall at ($x, 3)" level_differs "$x" 3 0; done
xdotool mouseup 3
pick_tile 61
paint 3 1 61
click_at 40 160 # optHatchery
keys ctrl+f     # Set Floor: the Normal floor becomes the Hatchery floor
wait_level_shows 1 1 1
keys F7 # level 1
type_into 96 417 200 # txtTime
keys alt+f x
answer_message y
expect_editor_ends
same_bytes "$work/namesake" "$namesake" "a save touched the lower-case namesake"
# The opened bytes with exactly the edits: level 1 (from byte 52) its time; level 2 (from byte
# 452, its cells from 468, 12 wide) its level type, its floor, a tile, and four walls 89..97.
mapfile -t expected < <(read_bytes "$work/original.kst")
mapfile -t written < <(read_bytes "$opened")
expected[52 + 3]=200 expected[452 + 10]=1 expected[468 + 12 + 3]=61
for ((i = 468; i < 468 + 96; i++)); do [ "${expected[i]}" -ne 0 ] || expected[i]=1; done
for i in 505 506 507 508; do
    [[ "${written[i]:-}" =~ ^(89|9[0-7])$ ]] || fail "the wall mode wrote tile ${written[i]:-none}"
    expected[i]=${written[i]}
done
write_bytes "$work/expected.kst" "${expected[@]}"
same_bytes "$work/expected.kst" "$opened" "Yes on the save prompt saved other bytes than the edits"
echo "PASS: edited, saved and closed a fresh levelset; opened, edited and saved another"
