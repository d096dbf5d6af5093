#!/usr/bin/env bash
# What a desktop expects of a build installed into a fresh prefix, and nothing else, and the same
# in the Debian package. Usage: install_layout.sh BUILD-DIR LEVELSET.json (first level 24 x 16)
set -euo pipefail
build=$1 json=$2 id=example.kstedit.KstEdit type=application/x-kestrix-levelset
# shellcheck source-path=SCRIPTDIR source=x_session.sh
source "$(dirname "$0")/x_session.sh"
prefix=$(mktemp -d "${TMPDIR:-/tmp}/kst-install.XXXXXX") work=$(mktemp -d "${TMPDIR:-/tmp}/kst.XXXXXX")
trap 'rm -rf "$prefix" "$work"' EXIT
"${CMAKE:-cmake}" --install "$build" --prefix "$prefix" >/dev/null || fail "cmake --install failed"
libdir=$(sed -n 's/^CMAKE_INSTALL_LIBDIR:PATH=//p' "$build/CMakeCache.txt")
layout="bin/KstEdit bin/kstool ${libdir:-lib}/kstool/kstool-draw.so share/applications/$id.desktop
share/doc/kstedit/changelog.gz share/doc/kstedit/copyright share/icons/hicolor/16x16/apps/kstedit.png
share/icons/hicolor/32x32/apps/kstedit.png share/metainfo/$id.metainfo.xml share/mime/packages/$id.xml
share/thumbnailers/$id.thumbnailer"
same_files() {
    local got
    got=$(LC_ALL=C sort)
    [ "$got" = "$(tr ' ' '\n' <<<"$layout")" ] || fail "$1 differ from the layout: $got"
}
(cd "$prefix" && find . -type f -o -type l | sed 's|^\./||') | same_files "the installed files"
[ -x "$prefix/bin/KstEdit" ] && [ -x "$prefix/bin/kstool" ] || fail "a program is not executable"
size() { identify -format '%m %wx%h' "$1"; }
for n in 16 32; do
    [ "$(size "$prefix/share/icons/hicolor/${n}x$n/apps/kstedit.png")" = "PNG ${n}x$n" ] || fail "the $n-pixel icon"
done

# The menu entry claims no file type: the editor opens no file named on its command line.
key() { sed -n "s/^$1=//p" "${2:-$prefix/share/applications/$id.desktop}"; }
[ "$(key Exec) $(key Icon) $(key Type) $(key MimeType)" = "KstEdit kstedit Application " ] || fail "the menu entry"
report=$(desktop-file-validate "$prefix/share/applications/$id.desktop" 2>&1) || fail "$report"
if grep -E ': (warning|error):' <<<"$report"; then fail "desktop-file-validate complains"; fi
report=$(appstreamcli validate-tree --no-net "$prefix" 2>&1) || fail "appstreamcli: $report"
# The installed companion finds its drawing module on its own: it draws the sheet.
"$prefix/bin/kstool" sheet -o "$work/sheet.png" && [[ "$(size "$work/sheet.png")" = PNG* ]] || fail "no sheet"

# The file type by name whatever the tag, by the tag "KST0" whatever the name, and nothing else.
"$prefix/bin/kstool" import "$json" -o "$work/zkstldmo.kst" >/dev/null
XDG_DATA_DIRS="$prefix/share" update-mime-database "$prefix/share/mime"
export XDG_DATA_DIRS="$prefix/share" XDG_DATA_HOME="$work/no-home"
printf 'KSTXABC\1' >"$work/zkstlabc.kst"
cp "$work/zkstldmo.kst" "$work/levels-copy"
printf 'KST1ABC\1' >"$work/not-a-levelset"
for row in zkstlabc.kst:$type levels-copy:$type not-a-levelset:other; do
    actual=$(gio info -a standard::content-type "$work/${row%:*}" | sed -n 's/^ *standard::content-type: //p')
    [ "$actual" = "$type" ] && got=$type || got=other
    [ "$got" = "${row#*:}" ] || fail "${row%:*} is of type $actual"
done

# The thumbnailer run as a file manager runs it: the first level's 24 x 16 cells as the editor
# paints them, 4 pixels a cell within 128, 8 within 256, each block's centre pixel as -sample keeps.
thumbnailer="$prefix/share/thumbnailers/$id.thumbnailer"
[ "$(key MimeType "$thumbnailer")" = "$type;" ] || fail "the thumbnailer is not for $type"
thumbnail() { # INPUT OUTPUT SIZE
    local word command=()
    for word in $(key Exec "$thumbnailer"); do
        word=${word//%s/$3} word=${word//%i/$1}
        command+=("${word//%o/$2}")
    done
    PATH="$prefix/bin:$PATH" "${command[@]}"
}
"$prefix/bin/kstool" render "$work/zkstldmo.kst" --level 1 -o "$work/level.png"
convert "$work/level.png" -crop 384x256+0+0 +repage "$work/cells.png"
for row in 128:96x64 256:192x128; do
    thumbnail "$work/zkstldmo.kst" "$work/thumbnail.png" "${row%:*}" || fail "no thumbnail at ${row%:*}"
    [ "$(size "$work/thumbnail.png")" = "PNG ${row#*:}" ] || fail "the thumbnail at ${row%:*} is not ${row#*:}"
    convert "$work/cells.png" -sample "${row#*:}!" "$work/expected.png"
    compare -metric AE "$work/thumbnail.png" "$work/expected.png" null: 2>/dev/null || fail "other pixels at ${row%:*}"
done
head -c 100 "$work/zkstldmo.kst" >"$work/zkstlcut.kst"
! thumbnail "$work/zkstlcut.kst" "$work/cut.png" 128 2>/dev/null && [ ! -e "$work/cut.png" ] || fail "a cut file made a thumbnail"

report=$("${CPACK:-cpack}" --config "$build/CPackConfig.cmake" -G DEB -B "$work/deb" 2>&1) || fail "cpack: $report"
deb=("$work"/deb/kstedit_*.deb)
dpkg-deb -c "${deb[0]}" | awk '$1 !~ /^d/ { print $6 }' | sed 's|^\./usr/||' | same_files "the packaged files"
grep -q libqt6widgets6 <<<"$(dpkg-deb -f "${deb[0]}" Depends)" || fail "the package does not depend on Qt's widgets"
echo "PASS: installed the expected layout"
