#!/bin/bash
# Pictures of the window in seven states, light and dark, narrow, in German and in French: pictures.sh PROGRAM FOLDER
# Puts those of two builds side by side: pictures.sh --beside BEFORE AFTER FOLDER
# Needs Xvfb, openbox, xdotool, ImageMagick and, for small files, pngquant and optipng, which the project itself doesn't.
set -euo pipefail

STATES="empty results dark replaced narrow german"

shrink() { # picture; few colours make a small file
    command -v pngquant >/dev/null && pngquant --force --ext .png "$1" || true
    command -v optipng >/dev/null && optipng -quiet "$1" || true
}

beside() { # before after folder
    mkdir -p "$3"
    local state
    for state in $STATES; do
        convert "$1/$state.png" "$2/$state.png" -bordercolor '#808080' -border 4 -gravity north +append \
            "$3/before-after-$state.png"
        shrink "$3/before-after-$state.png"
    done
}

if [ "$1" = --beside ]; then
    beside "$2" "$3" "$4"
    exit
fi

program=$(realpath "$1")
mkdir -p "$2"
out=$(realpath "$2")
work=$(mktemp -d)
display=$(mktemp)
started=()
trap 'for p in "${started[@]}"; do kill "$p" 2>/dev/null || true; done; rm -rf "$work" "$display"' EXIT

make_tree() {
    rm -rf "$work/home"
    local home=$work/home harbour=$work/home/src/harbour
    mkdir -p "$harbour/src" "$harbour/docs/ru" "$harbour/docs/fr" "$home/notes"
    {
        seq -f '// %g' 11
        printf 'const int low_tide = table[hour %% 24];\n'
        seq -f '// %g' 13 38
        printf '\t// The moon pulls, the mole holds.\n\treturn level(high_tide, moon) + drift;\n'
        seq -f '// %g' 41 117
        printf '%s the current of the spring_tide carries the sand along the mole and %s\n' \
            "$(printf 'water %.0s' $(seq 60))" "$(printf 'stone %.0s' $(seq 60))"
    } >"$harbour/src/harbour.cpp"
    printf 'Прилив\n\nПолная_вода — это морская_tide, а не речная_tide.\n' >"$harbour/docs/ru/прилив.txt"
    printf 'La mar\351e haute, high_tide\n' >"$harbour/docs/fr/marée.txt"
    printf '# Tides\n\nlow_tide, high_tide and the spring_tide of שלום high_tide\n%s' \
        "$(seq -f 'neap_tide %g' 14)" >"$home/notes/tides.md"
}

run_program() { # size, then arguments
    local size=$1
    shift
    env HOME="$work/home" XDG_CONFIG_HOME="$work/config" XDG_STATE_HOME="$work/state" \
        XDG_RUNTIME_DIR="$work/runtime" DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere LANGUAGE= \
        "$program" "$@" >"$work/log" 2>&1 &
    running=$!
    started+=("$running")
    local tries
    for tries in $(seq 100); do
        window=$(xdotool search --onlyvisible --pid "$running" --name '^Velkor Tidemark$' 2>/dev/null | tail -1) || true
        [ -n "$window" ] && break
        sleep 0.1
    done
    xdotool windowmove "$window" 0 0 windowsize "$window" ${size/x/ } windowfocus "$window" 2>/dev/null || true
    sleep 1
}

end_program() {
    kill "$running" 2>/dev/null || true
    wait "$running" 2>/dev/null || true
    rm -rf "$work/config/Velkor" "$work/runtime"/* "$work/state"/*
}

take() { # name
    sleep 0.7
    import -window "$window" "$out/$1.png"
    shrink "$out/$1.png"
}

places() { printf '%s\n' "$work/home/src/harbour" "$work/home/notes/tides.md"; }

# Searches; a person's hand does the rest.
search() { # size
    mapfile -t locations < <(places)
    run_program "$1" --find tide --replace ebb -- "${locations[@]}"
    xdotool key ctrl+Return
    sleep 1.2
    xdotool key Down Down
    sleep 0.3
}

go_dark() {
    mkdir -p "$work/config"
    cat >"$work/config/kdeglobals" <<'COLORS'
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
ForegroundLink=29,153,243
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[KDE]
widgetStyle=Fusion
COLORS
    export XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5
}

mkdir -p "$work/runtime" "$work/state" "$work/config"
chmod 700 "$work/runtime"
Xvfb -displayfd 3 -screen 0 ${PICTURES_SCREEN:-1280x1024}x24 -nolisten tcp 3>"$display" 2>/dev/null &
started+=($!)
for _ in $(seq 100); do [ -s "$display" ] && break; sleep 0.1; done
export DISPLAY=":$(cat "$display")" QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8
unset WAYLAND_DISPLAY
LC_ALL=C openbox --sm-disable >/dev/null 2>&1 &
started+=($!)
sleep 0.5

size=${PICTURES_SIZE:-900x760}
make_tree
run_program "$size"
take empty
end_program

search "$size"
take results
end_program

(
    go_dark
    search "$size"
    take dark
    end_program
)
rm -f "$work/config/kdeglobals"

search 640x480
take narrow
end_program

export LC_ALL=de_DE.UTF-8 2>/dev/null
search "$size"
take german
end_program
export LC_ALL=fr_FR.UTF-8 2>/dev/null
search "$size"
take french
end_program
export LC_ALL=C.UTF-8

search "$size"
xdotool key ctrl+l
sleep 1
xdotool key Return
sleep 1.5
take replaced
end_program
