# shellcheck shell=bash
# A person at the installer's window, on the virtual screen of start_display, in the prefix of WINEPREFIX. Source it
# behind lib.sh.

# start_wizard FOLDER PROGRAM [OPTION...] starts the program in a folder of this machine, for a user of the language that
# `language` names (such as zh_CN); wizard is its process id.
start_wizard() {
    local folder=$1 program=$2
    shift 2
    (cd "$folder" && exec env LC_ALL="${language:-en_US}.UTF-8" wine "$program" "$@" >/dev/null 2>&1 </dev/null) &
    wizard=$!
}

# wait_page TITLE waits for a page with this title and sets page to its window.
wait_page() {
    local i
    for ((i = 0; i < 600; i++)); do
        page=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | head -n 1) || true
        if [ -n "$page" ]; then return 0; fi
        sleep 0.1
    done
    die "no page came up with the title $1"
}

# same_picture A B, to the pixel.
same_picture() { [ -s "$1" ] && [ -s "$2" ] && [ "$(compare -metric AE "$1" "$2" null: 2>&1)" = 0 ]; }

# take_picture FILE [FORMER] takes a picture of the page once it is painted: when a second one is the same, or nearly so
# while a bar moves. With FORMER, a picture of the page before, it waits for another page than that.
take_picture() {
    local file=$1 i
    rm -f "$file"
    for ((i = 0; i < 40; i++)); do
        sleep 0.2
        import -window "$page" "$file.now.png" 2>/dev/null || continue
        mogrify -strip "$file.now.png"
        if [ -n "${2-}" ] && same_picture "$2" "$file.now.png"; then continue; fi
        if same_picture "$file" "$file.now.png"; then break; fi
        mv "$file.now.png" "$file"
        if [ "$i" -ge 5 ] && [ -z "${2-}" ]; then break; fi
    done
    rm -f "$file.now.png"
    [ -s "$file" ] || die "no picture of the window"
}

# press KEY... presses keys, as xdotool names them.
press() {
    xdotool mousemove 512 300 key "$@"
}

# end_wizard waits for the end of the program and sets code to its exit code.
end_wizard() {
    code=0
    wait "$wizard" || code=$?
}

# chinese_titles gives the titles of windows a font that has both languages: Wine's own for them has no Chinese. Windows
# keeps it as a LOGFONTW: bold, of the Chinese set.
chinese_titles() {
    local face logfont
    face=$(printf 'WenQuanYi Micro Hei' | iconv -t utf-16le | od -An -v -tx1 | tr -d ' \n')
    logfont=f5ffffff000000000000000000000000bc0200000000008600000022$face
    logfont=$logfont$(printf '%0*d' $((184 - ${#logfont})) 0)
    wine reg add 'HKCU\Control Panel\Desktop\WindowMetrics' /v CaptionFont /t REG_BINARY /d "$logfont" /f \
        >"$build/titles.log" 2>&1 </dev/null
}
