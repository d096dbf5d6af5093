#!/usr/bin/env bash
# Opens a levelset through the real "Open" dialog, saves it unchanged, edits its second level
# with the right-button wall mode, the palette, the level type and Set Floor, edits the first
# level's time, and leaves through File > Exit answering Yes, which saves again. Each file is
# checked against the opened bytes with exactly the edited bytes changed.
#
# Usage: open_edit_save.sh PATH-TO-KstEdit PATH-TO-kstool LEVELSET.json
# The levelset (two levels: 24 x 16, then 12 x 8) is made from the JSON with kstool import.
set -euo pipefail

editor=${1:?usage: open_edit_save.sh KstEdit kstool LEVELSET.json}
kstool=${2:?usage: open_edit_save.sh KstEdit kstool LEVELSET.json}
json=${3:?usage: open_edit_save.sh KstEdit kstool LEVELSET.json}
# shellcheck source-path=SCRIPTDIR source=x_session.sh
source "$(dirname "$0")/x_session.sh"
on_own_display "$@"

# The file on disk has a capital name and a lower-case namesake beside it. Save rewrites the
# file that was opened, never the namesake.
mkdir "$work/Levels"
"$kstool" import "$json" -o "$work/Levels/zkstldmo.kst" >/dev/null
opened="$work/Levels/ZKSTLDMO.KST"
namesake="$work/Levels/zkstldmo.kst"
mv "$namesake" "$opened"
cp "$opened" "$work/original.kst"
echo "another levelset" >"$namesake"
cp "$namesake" "$work/namesake"

# File offsets of the fields edited below: 52 bytes before the first level, then each level's
# 16 header bytes and its cells row by row.
readonly Level1=52 Level2=$((52 + 16 + 24 * 16))
readonly TimeByte=3 LevelTypeByte=10
level2_cell() { echo $((Level2 + 16 + 12 * $2 + $1)); }

start_editor "$editor"

keys ctrl+o
answer_message "the save prompt" n
file_dialog_enter "Open" "$opened"
wait_for 15 "the title to name the opened file" titled "$opened"
wait_level_shows 9 2 73 # the alien in the first room

# Save writes at once, without a dialog, a new file in the opened one's place.
inode=$(stat -c %i "$opened")
keys ctrl+s
wait_for 15 "the editor to rewrite $opened" test "$(stat -c %i "$opened")" != "$inode"
no_window_named '^Save As$' || fail "Save of an opened levelset asked for a name"
titled "$opened" || fail "the title no longer names the opened file"
same_bytes "$work/original.kst" "$opened" "saving an opened levelset unchanged altered its bytes"

# Level 2.
keys F8
wait_level_shows 2 2 69 # its alien hole

keys alt+t m w # Right Mouse Button > Random Wall Tile
point_at_level 1 3
xdotool mousedown 3
for x in 1 2 3 4; do
    point_at_level "$x" 3
    wait_for 20 "a random wall at ($x, 3)" level_differs "$x" 3 0
done
xdotool mouseup 3

pick_tile 61
paint 3 1 61
point_at_client 40 160 # optHatchery
xdotool click 1
keys ctrl+f # Set Floor: the Normal floor becomes the Hatchery floor
wait_level_shows 1 1 1

# Level 1.
keys F7
wait_level_shows 9 2 73
type_into 96 417 200 # txtTime

keys alt+f x
answer_message "the save prompt" y
expect_editor_ends
same_bytes "$work/namesake" "$namesake" "a save touched the lower-case namesake"

mapfile -t expected < <(read_bytes "$work/original.kst")
mapfile -t written < <(read_bytes "$opened")
expected[Level1 + TimeByte]=200
expected[Level2 + LevelTypeByte]=1
for ((offset = $(level2_cell 0 0); offset < $(level2_cell 0 8); offset++)); do
    [ "${expected[offset]}" -ne 0 ] || expected[offset]=1
done
expected[$(level2_cell 3 1)]=61
for x in 1 2 3 4; do
    offset=$(level2_cell "$x" 3)
    tile=${written[offset]:-none}
    [[ "$tile" =~ ^[0-9]+$ ]] && [ "$tile" -ge 89 ] && [ "$tile" -le 97 ] ||
        fail "the wall mode wrote tile $tile at ($x, 3), not one of the walls 89..97"
    expected[offset]=$tile
done
write_bytes "$work/expected.kst" "${expected[@]}"
same_bytes "$work/expected.kst" "$opened" "Yes on the save prompt saved other bytes than the edits"

echo "PASS: opened, saved unchanged, edited two levels, saved on exit"
