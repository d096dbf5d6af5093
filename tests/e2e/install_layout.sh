#!/usr/bin/env bash
# Installs a built tree into a fresh prefix and checks what a desktop expects to find there:
# the two programs in bin, kstool's drawing module, the menu entry, and the icon at each size
# under the name the entry gives. Nothing else may be installed.
#
# Usage: install_layout.sh BUILD-DIR    (CMAKE names the cmake to run; default: the one on PATH)
set -euo pipefail

build=${1:?usage: install_layout.sh BUILD-DIR}
prefix=$(mktemp -d "${TMPDIR:-/tmp}/kst-install.XXXXXX")
trap 'rm -rf "$prefix"' EXIT

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

"${CMAKE:-cmake}" --install "$build" --prefix "$prefix" >/dev/null || fail "cmake --install failed"

libdir=$(sed -n 's/^CMAKE_INSTALL_LIBDIR:PATH=//p' "$build/CMakeCache.txt")
expected="bin/KstEdit
bin/kstool
${libdir:-lib}/kstool/kstool-draw.so
share/applications/kstedit.desktop
share/icons/hicolor/16x16/apps/kstedit.png
share/icons/hicolor/32x32/apps/kstedit.png"
installed=$(cd "$prefix" && find . -type f -o -type l | sed 's|^\./||' | LC_ALL=C sort)
[ "$installed" = "$expected" ] ||
    fail "installed files differ from the layout:$(diff <(echo "$expected") <(echo "$installed") | sed 's/^/\n  /')"

for program in KstEdit kstool; do
    [ -x "$prefix/bin/$program" ] || fail "bin/$program is not executable"
done
# kstool finds its drawing module where it was installed.
"$prefix/bin/kstool" sheet -o "$prefix/sheet.png" || fail "the installed kstool cannot draw"
rm "$prefix/sheet.png"

# A PNG holds its width and height as big-endian 32-bit numbers at bytes 16 and 20.
png_size() {
    local signature
    signature=$(od -An -tx1 -N8 "$1" | tr -d ' \n')
    [ "$signature" = 89504e470d0a1a0a ] || fail "$1 is not a PNG"
    od -An -tu1 -j16 -N8 "$1" |
        awk '{ print $1*16777216 + $2*65536 + $3*256 + $4 "x" $5*16777216 + $6*65536 + $7*256 + $8 }'
}
for size in 16 32; do
    icon="$prefix/share/icons/hicolor/${size}x${size}/apps/kstedit.png"
    actual=$(png_size "$icon")
    [ "$actual" = "${size}x${size}" ] || fail "the ${size}x${size} icon is $actual pixels"
done

# The menu entry must start the installed program by name and find the installed icon.
entry="$prefix/share/applications/kstedit.desktop"
key() { sed -n "s/^$1=//p" "$entry"; }
[ "$(key Exec)" = KstEdit ] || fail "the menu entry runs \"$(key Exec)\", not KstEdit"
[ "$(key Icon)" = kstedit ] || fail "the menu entry names the icon \"$(key Icon)\", not kstedit"
[ "$(key Type)" = Application ] || fail "the menu entry is not of type Application"
if command -v desktop-file-validate >/dev/null; then
    report=$(desktop-file-validate "$entry" 2>&1) || fail "desktop-file-validate: $report"
    # Hints are advice on menus; warnings and errors are faults in the entry.
    if grep -E ': (warning|error):' <<<"$report"; then fail "desktop-file-validate complains"; fi
else
    echo "note: desktop-file-validate not installed; the entry was checked by its keys only"
fi

# The installed companion runs on its own and carries the tileset: it draws the sheet.
"$prefix/bin/kstool" sheet -o "$prefix/sheet.png" || fail "the installed kstool could not draw the sheet"
png_size "$prefix/sheet.png" >/dev/null

echo "PASS: installed $(wc -l <<<"$expected") files in the expected layout"
