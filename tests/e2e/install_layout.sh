#!/usr/bin/env bash
# Installs a built tree into a fresh prefix and checks what a desktop expects to find there:
# the two programs in bin, kstool's drawing module, the menu entry, the icon at each size under
# the name the entry gives, the levelset file type, its thumbnailer and the AppStream metadata.
# Nothing else may be installed, and the Debian package holds exactly the same files.
#
# Usage: install_layout.sh BUILD-DIR LEVELSET.json
# (CMAKE and CPACK name the programs to run; default: the ones on PATH.) The levelset's first
# level is 24 x 16.
set -euo pipefail

build=${1:?usage: install_layout.sh BUILD-DIR LEVELSET.json}
json=${2:?usage: install_layout.sh BUILD-DIR LEVELSET.json}
prefix=$(mktemp -d "${TMPDIR:-/tmp}/kst-install.XXXXXX")
work=$(mktemp -d "${TMPDIR:-/tmp}/kst-desktop.XXXXXX")
trap 'rm -rf "$prefix" "$work"' EXIT
readonly id=example.kstedit.KstEdit type=application/x-kestrix-levelset

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

"${CMAKE:-cmake}" --install "$build" --prefix "$prefix" >/dev/null || fail "cmake --install failed"

libdir=$(sed -n 's/^CMAKE_INSTALL_LIBDIR:PATH=//p' "$build/CMakeCache.txt")
expected="bin/KstEdit
bin/kstool
${libdir:-lib}/kstool/kstool-draw.so
share/applications/$id.desktop
share/doc/kstedit/changelog.gz
share/doc/kstedit/copyright
share/icons/hicolor/16x16/apps/kstedit.png
share/icons/hicolor/32x32/apps/kstedit.png
share/metainfo/$id.metainfo.xml
share/mime/packages/$id.xml
share/thumbnailers/$id.thumbnailer"
installed=$(cd "$prefix" && find . -type f -o -type l | sed 's|^\./||' | LC_ALL=C sort)
[ "$installed" = "$expected" ] ||
    fail "installed files differ from the layout:$(diff <(echo "$expected") <(echo "$installed") | sed 's/^/\n  /')"

for program in KstEdit kstool; do
    [ -x "$prefix/bin/$program" ] || fail "bin/$program is not executable"
done

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
entry="$prefix/share/applications/$id.desktop"
key() { sed -n "s/^$1=//p" "${2:-$entry}"; }
[ "$(key Exec)" = KstEdit ] || fail "the menu entry runs \"$(key Exec)\", not KstEdit"
[ "$(key Icon)" = kstedit ] || fail "the menu entry names the icon \"$(key Icon)\", not kstedit"
[ "$(key Type)" = Application ] || fail "the menu entry is not of type Application"
# The editor opens no file named on its command line, so the entry claims no file type.
[ -z "$(key MimeType)" ] || fail "the menu entry claims to open $(key MimeType)"
if command -v desktop-file-validate >/dev/null; then
    report=$(desktop-file-validate "$entry" 2>&1) || fail "desktop-file-validate: $report"
    # Hints are advice on menus; warnings and errors are faults in the entry.
    if grep -E ': (warning|error):' <<<"$report"; then fail "desktop-file-validate complains"; fi
else
    echo "note: desktop-file-validate not installed; the entry was checked by its keys only"
fi

# The installed companion runs on its own, finds its drawing module and carries the tileset: it
# draws the sheet.
"$prefix/bin/kstool" sheet -o "$work/sheet.png" || fail "the installed kstool could not draw the sheet"
png_size "$work/sheet.png" >/dev/null

# The metadata is valid and names the installed menu entry.
report=$(appstreamcli validate-tree --no-net "$prefix" 2>&1) || fail "appstreamcli: $report"

# The file type: by name whatever the tag, by the tag "KST0" whatever the name, and nothing
# else. The prefix's database alone is searched.
"$prefix/bin/kstool" import "$json" -o "$work/zkstldmo.kst" >/dev/null
XDG_DATA_DIRS="$prefix/share" update-mime-database "$prefix/share/mime"
export XDG_DATA_DIRS="$prefix/share" XDG_DATA_HOME="$work/no-home"
printf 'KSTXABC\1' >"$work/zkstlabc.kst"
cp "$work/zkstldmo.kst" "$work/levels-copy"
printf 'KST1ABC\1' >"$work/not-a-levelset"
while read -r name wanted; do
    actual=$(gio info -a standard::content-type "$work/$name" | sed -n 's/^ *standard::content-type: //p')
    if [ "$wanted" = "$type" ]; then
        [ "$actual" = "$type" ] || fail "$name is of type \"$actual\""
    elif [ "$actual" = "$type" ]; then fail "$name is taken for a levelset"; fi
done <<<"zkstlabc.kst $type
levels-copy $type
not-a-levelset other"

# The thumbnailer, run as a file manager runs it: its Exec line split at blanks, %s the size,
# %i the input, %o the output, the program found on PATH.
thumbnailer="$prefix/share/thumbnailers/$id.thumbnailer"
[ "$(key MimeType "$thumbnailer")" = "$type;" ] || fail "the thumbnailer is not for $type"
thumbnail() { # INPUT OUTPUT SIZE
    local word command=()
    for word in $(key Exec "$thumbnailer"); do
        word=${word//%s/$3}
        word=${word//%i/$1}
        command+=("${word//%o/$2}")
    done
    PATH="$prefix/bin:$PATH" "${command[@]}"
}
# The first level, 24 x 16 cells, as the editor paints it: its cells at 16 pixels each.
"$prefix/bin/kstool" render "$work/zkstldmo.kst" --level 1 -o "$work/level.png"
convert "$work/level.png" -crop 384x256+0+0 +repage "$work/cells.png"
# A cell takes the largest of 16, 8, 4, ... pixels with which 24 cells fit: 4 within 128
# (8 would make 192), 8 within 256 (16 would make 384).
for row in "128 96x64" "256 192x128"; do
    read -r size dimensions <<<"$row"
    thumbnail "$work/zkstldmo.kst" "$work/thumbnail.png" "$size" || fail "no thumbnail at $size"
    actual=$(png_size "$work/thumbnail.png")
    [ "$actual" = "$dimensions" ] || fail "the thumbnail at $size is $actual, not $dimensions"
    # ImageMagick's -sample keeps the pixel at the centre of each block, as the thumbnail does.
    convert "$work/cells.png" -sample "$dimensions!" "$work/expected.png"
    compare -metric AE "$work/thumbnail.png" "$work/expected.png" null: 2>/dev/null ||
        fail "the thumbnail at $size is not the level's cells"
done
head -c 100 "$work/zkstldmo.kst" >"$work/zkstlcut.kst"
if thumbnail "$work/zkstlcut.kst" "$work/cut.png" 128 2>/dev/null; then
    fail "a cut file made a thumbnail"
fi
[ ! -e "$work/cut.png" ] || fail "a cut file left a picture"

# The Debian package holds what the install placed, under /usr, with dependencies found from
# the shared libraries.
report=$("${CPACK:-cpack}" --config "$build/CPackConfig.cmake" -G DEB -B "$work/deb" 2>&1) ||
    fail "cpack: $report"
deb=("$work"/deb/kstedit_*.deb)
packaged=$(dpkg-deb -c "${deb[0]}" | awk '$1 !~ /^d/ { print $6 }' | sed 's|^\./usr/||' | LC_ALL=C sort)
[ "$packaged" = "$expected" ] ||
    fail "the package differs from the install:$(diff <(echo "$expected") <(echo "$packaged") | sed 's/^/\n  /')"
grep -q 'libqt6widgets6' <<<"$(dpkg-deb -f "${deb[0]}" Depends)" ||
    fail "the package does not depend on Qt's widgets library"

echo "PASS: installed $(wc -l <<<"$expected") files in the expected layout"
