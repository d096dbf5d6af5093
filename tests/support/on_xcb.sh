#!/usr/bin/env bash
# on_xcb.sh PROGRAM [ARGUMENT...]: runs a test program on the xcb platform, on its own Xvfb
# display with the openbox window manager, as a user's desktop runs the editor. Exits with the
# program's status; the servers it started end with it.
# shellcheck disable=SC2317 # end_session and wm_running run through trap and waits
set -euo pipefail
for tool in Xvfb openbox xprop; do
    command -v "$tool" >/dev/null || { echo "FAIL: $tool is not installed" >&2 && exit 1; }
done
session=$(mktemp -d "${TMPDIR:-/tmp}/KstXcb.XXXXXX")
mkdir -m 700 "$session/runtime"
pids=""
end_session() {
    for pid in $pids; do kill "$pid" 2>/dev/null && wait "$pid" 2>/dev/null; done
    rm -rf "$session"
}
trap end_session EXIT
# waits WHAT COMMAND...: polls COMMAND for up to 20 seconds, or fails naming WHAT.
waits() {
    local deadline=$((SECONDS + 20)) what=$1
    shift
    until "$@"; do
        [ "$SECONDS" -lt "$deadline" ] || { echo "FAIL: no $what" >&2 && cat "$session"/*.log >&2; exit 1; }
        sleep 0.05
    done
}
# The server picks a free display itself and writes its number once it accepts clients.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$session/display" >"$session/x.log" 2>&1 &
pids=$!
waits "X server" test -s "$session/display"
DISPLAY=":$(head -1 "$session/display")"
export DISPLAY QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR="$session/runtime"
# A window manager is up once it has named its check window on the root window.
openbox --sm-disable >"$session/wm.log" 2>&1 &
pids="$! $pids"
wm_running() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
waits "window manager" wm_running
"$@"
