# Read by ./windows: programs for Windows under wine, in a Windows folder of their own, and never longer than a limit.

export WINEPREFIX=${VALVECELL_WINE:-$cache/wine/prefix}
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=mscoree,mshtml=
export LC_ALL=C.UTF-8

# A path of this machine as programs under wine know it.
windows_path() {
    printf 'Z:%s' "${1//\//\\}"
}

prepare_wine() {
    mkdir -p "$WINEPREFIX"
    [ -e "$WINEPREFIX/system.reg" ] || timeout 300 wine wineboot --init >/dev/null 2>&1 || true
    # Where the libraries lie that the built programs ask for.
    local places=("$prefix/bin" "$prefix/x64/mingw/bin" "$(dirname "$($host-g++-posix -print-libgcc-file-name)")"
        "/usr/$host/lib") place path=''
    for place in "${places[@]}"; do path+="$(windows_path "$place");"; done
    export WINEPATH=$path
    export QT_PLUGIN_PATH; QT_PLUGIN_PATH=$(windows_path "$prefix/plugins")
}

# compare_parts N: a cell on each system, fed through a TCP line by a PLC on the same system; the results side by side.
compare_parts() {
    local parts=$1 home=$root/build/windows/home results=$root/build/windows bin=$folder place=127.0.0.1:4817
    "$root/run" --parts "$parts" --headless --line tcp --fresh --home "$results/home-linux" --json "$results/linux.json" \
        >"$results/linux.txt" || echo "the run on this system failed; see $results/linux.txt" >&2
    rm -rf "$home"
    mkdir -p "$home"
    # Images of the same wheels: they are rendered from the same seeds.
    timeout 300 wine "$bin/wheelgen.exe" --demo "$(windows_path "$home")" --port "tcp:$place" --fresh
    timeout 900 wine "$bin/plcsim.exe" --listen "$place" --name-file "$(windows_path "$home/plc.name")" \
        --home "$(windows_path "$home")" --truth1 "$(windows_path "$home/images/1")" \
        --truth2 "$(windows_path "$home/images/2")" --filter 60 --camera-delay 15 \
        --road "$(windows_path "$home/run.log")" --parts "$parts" --interval 100 \
        --json "$(windows_path "$results/wine.json")" >"$results/wine.txt" &
    local plc=$! code=0
    QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES=valvecell.road.debug=true QT_LOGGING_TO_CONSOLE=1 \
        timeout 900 wine "$bin/valvecell.exe" --home "$(windows_path "$home")" 2>"$home/run.log" &
    local program=$!
    wait "$plc" || code=$?
    kill "$program" 2>/dev/null || true
    wait "$program" 2>/dev/null || true
    pr -m -t -w 200 "$results/linux.txt" "$results/wine.txt"
    return "$code"
}
