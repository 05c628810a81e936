# shellcheck shell=bash
# Functions shared by the scripts of this folder. Source it; it leaves the shell in the project's root.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
root=$PWD
# What is costly to make and outlives a removed build folder: libraries of the target, fresh Wine prefixes.
deps=$root/.deps
logs=$deps/log
# Where results go; TAVIX_BUILD names another folder, so that two builds of one tree can stand side by side.
build=$(realpath -m "${TAVIX_BUILD:-$root/build}")

say() { printf '%s: %s\n' "$(basename "$0")" "$*"; }
die() { say "$*" >&2; exit 1; }

# run_logged LOG COMMAND... runs a command with its output in .deps/log/LOG and shows the end of it on failure.
run_logged() {
    local log=$logs/$1
    shift
    mkdir -p "$logs"
    if ! "$@" >"$log" 2>&1 </dev/null; then
        tail -n 40 "$log" >&2
        say "failed: $* (whole output: ${log#"$root"/})" >&2
        return 1
    fi
}

# build_tree PRESET [TARGET...] configures when that is needed and builds. Two builders in one folder would spoil it, so
# they wait for each other.
build_tree() {
    local tree=$build/$1 preset=$1
    shift
    mkdir -p "$build"
    (
        flock 9
        if [ ! -f "$tree/build.ninja" ]; then
            run_logged "configure-$preset.log" cmake --preset "$preset" -B "$tree" || exit 1
        fi
        exec cmake --build "$tree" -- "${NINJA_OPTIONS:---quiet}" "$@"
    ) 9>"$tree.lock" </dev/null
}

# --- Wine ---
# The menu builder would write into the menus of the person who runs this; .NET and HTML would offer downloads.
export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'

windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# base_prefix win64|win32 makes a fresh Windows in .deps, once for each version of Wine.
base_prefix() {
    local arch=$1 base=$deps/prefix-$1 stamp=$deps/stamps/prefix-$1 version folder
    version="$(dpkg-query -W -f '${Version}' wine), $(declare -f base_prefix | cksum)"
    mkdir -p "$deps/stamps" "$logs"
    (
        flock 9
        if [ -f "$stamp" ] && [ "$(<"$stamp")" = "$version" ]; then exit 0; fi
        say "making a $arch prefix"
        rm -rf "$base" "$stamp"
        export WINEPREFIX=$base WINEARCH=$arch
        unset DISPLAY
        run_logged "prefix-$arch.log" timeout 300 wineboot -i || exit 1
        # A program that crashes prints its calls and ends; a window that tells about it would wait for ever.
        run_logged "prefix-$arch-debugger.log" timeout 60 \
            wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f || exit 1
        stop_wineserver "$base"
        # Wine links the folders of the user to those of the person who runs it; tests stay inside the prefix.
        find "$base/drive_c/users" -type l | while read -r folder; do rm "$folder" && mkdir "$folder"; done
        echo "$version" >"$stamp"
    ) 9>"$deps/stamps/prefix-$arch.lock"
}

# start_prefix FOLDER win64|win32 makes FOLDER a copy of the fresh Windows and keeps its server alive. Files are hard
# links: whoever changes one has to replace it. The server must not inherit our output, or a pipe behind us never ends.
start_prefix() {
    base_prefix "$2"
    rm -rf "$1"
    mkdir -p "$(dirname "$1")"
    cp -al "$deps/prefix-$2" "$1"
    # The registry as real copies: the server writes into a file that has several links, and so into all of its copies.
    cp --remove-destination "$deps/prefix-$2"/*.reg "$1"
    # Windows stand on a desktop in a window of its own: there is no window manager, for which Wine would wait.
    cat >>"$1/user.reg" <<'REG'

[Software\\Wine\\Explorer] 1700000000
"Desktop"="Setup"

[Software\\Wine\\Explorer\\Desktops] 1700000000
"Setup"="1024x768"
REG
    WINEPREFIX=$1 WINEARCH=$2 wineserver -p >/dev/null 2>&1 </dev/null 9>&-
}

stop_wineserver() {
    WINEPREFIX=$1 wineserver -k >/dev/null 2>&1 || true
    WINEPREFIX=$1 wineserver -w >/dev/null 2>&1 || true
}

stop_prefix() {
    stop_wineserver "$1"
    rm -rf "$1"
}

# start_display DIR sets DISPLAY to a new virtual screen and xvfb to its process id; end it with kill.
start_display() {
    local i
    mkdir -p "$1"
    : >"$1/display"
    Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$1/display" >"$1/xvfb.log" 2>&1 </dev/null &
    xvfb=$!
    for ((i = 0; i < 100; i++)); do
        if [ -s "$1/display" ]; then
            export DISPLAY=:$(<"$1/display")
            return 0
        fi
        sleep 0.1
    done
    die "no virtual display (see $1/xvfb.log)"
}
