#!/bin/sh
# usage: with-desktop.sh COMMAND...
#
# Runs a command on a private, empty desktop: an X server, a session bus, an accessibility bus, a
# window manager, and home and runtime folders of its own. All of it ends with the command.
#
#   DESKTOP_SIZE       the screen, by default 1440x900x24
#   DESKTOP_SCALE      Qt's scale factor, by default 1
#   DESKTOP_LOCALE     by default en_US.UTF-8, or C.UTF-8 where that is not installed
#   DESKTOP_KEEP_HOME  when set, the folders stay, and their place is printed
set -eu

if [ "${1:-}" = --inside ]; then
    shift
    metacity >"$XDG_RUNTIME_DIR/window-manager.log" 2>&1 &
    manager=$!
    # It is ready once it has put its check window on the root. Without it no window gets the focus.
    tries=0
    until xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 0x; do
        tries=$((tries + 1))
        [ "$tries" -lt 400 ] || { echo "the window manager did not start" >&2; exit 97; }
        sleep 0.05
    done
    code=0
    "$@" || code=$?
    kill "$manager" 2>/dev/null || true
    exit "$code"
fi

for tool in Xvfb dbus-run-session metacity xprop; do
    command -v "$tool" >/dev/null || { echo "missing: $tool" >&2; exit 96; }
done
base=$(mktemp -d)
mkdir -m 700 "$base/run"
mkdir "$base/home"
# The server chooses its own number, so that several desktops never meet.
Xvfb -displayfd 3 -screen 0 "${DESKTOP_SIZE:-1440x900x24}" -nolisten tcp -noreset \
    3>"$base/display" >"$base/server.log" 2>&1 &
server=$!
clean() {
    kill "$server" 2>/dev/null || true
    wait "$server" 2>/dev/null || true
    if [ -n "${DESKTOP_KEEP_HOME:-}" ]; then
        echo "kept: $base" >&2
    else
        rm -rf "$base"
    fi
}
trap clean EXIT
trap 'exit 130' INT TERM
tries=0
until [ -s "$base/display" ]; do
    kill -0 "$server" 2>/dev/null || { cat "$base/server.log" >&2; exit 95; }
    tries=$((tries + 1))
    [ "$tries" -lt 400 ] || { echo "the X server did not start" >&2; exit 95; }
    sleep 0.05
done
DISPLAY=:$(cat "$base/display")
export DISPLAY
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS XDG_CURRENT_DESKTOP \
    DESKTOP_STARTUP_ID XDG_ACTIVATION_TOKEN || true
locale=C.UTF-8
if locale -a 2>/dev/null | grep -qx 'en_US.utf8'; then locale=en_US.UTF-8; fi
code=0
env HOME="$base/home" XDG_RUNTIME_DIR="$base/run" XDG_CONFIG_HOME="$base/home/.config" \
    XDG_DATA_HOME="$base/home/.local/share" XDG_CACHE_HOME="$base/home/.cache" \
    LC_ALL="${DESKTOP_LOCALE:-$locale}" TZ=UTC \
    QT_QPA_PLATFORM=xcb QT_QPA_PLATFORMTHEME='' QT_STYLE_OVERRIDE=Fusion \
    QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_SCALE_FACTOR="${DESKTOP_SCALE:-1}" \
    dbus-run-session -- "$0" --inside "$@" 2>"$base/errors" || code=$?
# What dbus-daemon says of every service that it starts is no news.
grep -v '^dbus-daemon\[\|^SpiRegistry daemon\|^X connection to .* broken' "$base/errors" >&2 || true
exit "$code"
