#!/usr/bin/env bash
# A real git repository set up as the README's "Levels in git" says, word for word: git diff
# shows a painted cell, branches that paint different cells merge, and two that paint the same
# cell stop in a conflict that names it. Usage: git_levels.sh KSTOOL README.md
set -euo pipefail
kstool=$(realpath "$1")
readme=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Nothing of the machine's or the user's git setup may take part.
export HOME="$work" GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL="$work/gitconfig" PATH="${kstool%/*}:$PATH"
export GIT_AUTHOR_NAME=Designer GIT_AUTHOR_EMAIL=d@example.org GIT_COMMITTER_NAME=Designer
export GIT_COMMITTER_EMAIL=d@example.org
fail() { echo "FAIL: $*" >&2; exit 1; }
# The first level's cell (x, y), stored row by row after the 52 + 16 bytes before it.
at() { echo $((68 + $2 * 12 + $1)); }
cell() { od -An -tu1 -j "$(at "$1" "$2")" -N1 zkstlabc.kst | tr -d ' '; }
# branch NAME X Y TILE: a branch from main that paints one cell.
branch() {
    git checkout -q main && git checkout -qb "$1"
    printf "\\x$(printf %02x "$4")" | dd of=zkstlabc.kst bs=1 seek="$(at "$2" "$3")" conv=notrunc status=none
    git diff >../diff.txt && git commit -qam "$1"
}

git -c init.defaultBranch=main init -q "$work/levels" && cd "$work/levels"
sed -n '/^## Levels in git/,/^## /p' "$readme" | sed -n '/^```sh/,/^```/p' | sed '1d;$d' >../setup.sh
[ -s ../setup.sh ] || fail "no setup lines under \"Levels in git\" in the README"
bash -e ../setup.sh
# A fresh levelset: tag, count, reserved bytes, blank passcodes, a default 12 x 8 level of floor.
printf 'KST0ABC\x01\x00\x00%42s\x08\x0c\x00\x63\x01\x00\x02\x00\x59\x00\x00\x03\x0b\x07\x00\x00' '' >zkstlabc.kst
head -c 96 /dev/zero >>zkstlabc.kst && git add zkstlabc.kst && git commit -qm "a fresh levelset"

branch wall 3 4 89
grep -q '^+ *"  0   0   0  89   0' ../diff.txt || fail "git diff does not show the cell"
grep -q '^- *"  0   0   0   0   0' ../diff.txt || fail "git diff does not show the old row"
branch key 5 6 55
git checkout -q wall && git merge -q --no-edit key || fail "a merge of different cells failed"
[ "$(cell 3 4)$(cell 5 6)" = 8955 ] || fail "the merge lost an edit"
kstool check zkstlabc.kst >/dev/null || fail "the merged file is not clean"
branch door 3 4 170
git checkout -q wall && git merge --no-edit door >../merge.txt 2>&1 && fail "a merge of one cell went through"
grep -q '^conflict: level 1: cell (3, 4) floor 0 -> ours solid wall 89, theirs security door 170$' \
    ../merge.txt || fail "the conflict is not named: $(cat ../merge.txt)"
git status --porcelain | grep -q '^UU zkstlabc.kst$' || fail "the file is not marked conflicted"
[ "$(cell 3 4)$(cell 5 6)" = 8955 ] || fail "the conflicted file does not hold ours"
echo "git levels: ok"
