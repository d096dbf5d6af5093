#!/usr/bin/env bash
# Levelsets in a real git repository set up exactly as the README's "Levels in git" section
# says: git diff shows a painted cell, two branches that paint different cells merge cleanly,
# and two that paint the same cell differently stop in a conflict that names the cell.
# Usage: git_levels.sh KSTOOL README.md
set -euo pipefail
kstool=$(realpath "$1")
readme=$(realpath "$2")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Nothing of the machine's or the user's git setup may take part.
export HOME="$work" GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL="$work/gitconfig"
export GIT_AUTHOR_NAME=Designer GIT_AUTHOR_EMAIL=designer@example.org
export GIT_COMMITTER_NAME=Designer GIT_COMMITTER_EMAIL=designer@example.org
export PATH="$(dirname "$kstool"):$PATH"

fail() { echo "FAIL: $*" >&2; exit 1; }

# A fresh levelset of one 12 x 8 level: tag, count, reserved bytes, 42 blank passcode
# characters, the default header and 96 floor cells.
fresh() {
    printf 'KST0ABC\x01\x00\x00%42s' ''
    printf '\x08\x0c\x00\x63\x01\x00\x02\x00\x59\x00\x00\x03\x0b\x07\x00\x00'
    head -c 96 /dev/zero
}
# paint X Y TILE: one cell of the first level, stored row by row after the 52 + 16 bytes before.
paint() {
    printf "\\x$(printf %02x "$3")" |
        dd of=zkstlabc.kst bs=1 seek=$((52 + 16 + $2 * 12 + $1)) conv=notrunc status=none
}
cell() { od -An -tu1 -j $((52 + 16 + $2 * 12 + $1)) -N1 zkstlabc.kst | tr -d ' '; }

git -c init.defaultBranch=main init -q "$work/levels"
cd "$work/levels"
# The README's lines, word for word.
sed -n '/^## Levels in git/,/^## /p' "$readme" | sed -n '/^```sh/,/^```/p' | sed '1d;$d' >setup.sh
[ -s setup.sh ] || fail "no setup lines under \"Levels in git\" in the README"
bash -e setup.sh
rm setup.sh

fresh >zkstlabc.kst
git add zkstlabc.kst && git commit -qm "a fresh levelset"

git checkout -qb wall
paint 3 4 89
git diff >diff.txt
grep -q '^+ *"  0   0   0  89   0' diff.txt || fail "git diff does not show the painted cell: $(cat diff.txt)"
grep -q '^- *"  0   0   0   0   0' diff.txt || fail "git diff does not show the old row"
rm diff.txt
git commit -qam "a wall at (3, 4)"

git checkout -q main
git checkout -qb key
paint 5 6 55
git commit -qam "a key at (5, 6)"

git checkout -q wall
git merge -q --no-edit key || fail "the merge of different cells did not succeed"
[ "$(cell 3 4)$(cell 5 6)" = 8955 ] || fail "the merge lost an edit"
kstool check zkstlabc.kst >/dev/null || fail "the merged file is not clean"

git checkout -q main
git checkout -qb door
paint 3 4 170
git commit -qam "a door at (3, 4)"
git checkout -q wall
status=0
git merge --no-edit door >merge.txt 2>&1 || status=$?
[ "$status" = 1 ] || fail "a conflicting merge exits $status"
grep -q '^conflict: level 1: cell (3, 4) floor 0 -> ours solid wall 89, theirs security door 170$' \
    merge.txt || fail "the conflict is not named: $(cat merge.txt)"
git status --porcelain | grep -q '^UU zkstlabc.kst$' || fail "the file is not marked conflicted"
[ "$(cell 3 4)$(cell 5 6)" = 8955 ] || fail "the conflicted file does not hold ours"
echo "git levels: ok"
