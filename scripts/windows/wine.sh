# Sourced by the scripts that run Windows programs: which Wine, and a Wine prefix (a Windows of its own) for the build.

WINE=$(command -v /usr/lib/wine/wine64 || command -v wine64 || command -v wine || true)
[ -n "$WINE" ] || { echo "Wine is not installed; scripts/windows.sh installs it" >&2; exit 127; }
WINESERVER=$(command -v /usr/lib/wine/wineserver64 || command -v wineserver)

# The prefix of the build folder that holds FOLDER (bin/ or bin/plugins/): beside its CMakeCache.txt.
wine_prefix_of() {
    local folder=$1
    while [ "$folder" != / ] && [ ! -e "$folder/CMakeCache.txt" ]; do
        folder=$(dirname "$folder")
    done
    [ "$folder" != / ] || { echo "$1 is in no build folder; set FILE_PROCESS_WINEPREFIX" >&2; exit 2; }
    echo "$folder/wine"
}

# wine_use PREFIX: lets the programs started from here run in PREFIX, which is made when it is not there yet.
wine_use() {
    export WINEPREFIX=$1 WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all} WINELOADER=$WINE
    # Neither .NET nor a browser is needed: without these a new prefix would ask for both.
    export WINEDLLOVERRIDES='mscoree=;mshtml='
    [ -e "$WINEPREFIX/ready" ] && return
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        [ -e "$WINEPREFIX/ready" ] && exit
        env -u DISPLAY "$WINE" wineboot --init > "$WINEPREFIX/wineboot.log" 2>&1 9>&-
        # Wine keeps QT_ variables of the Unix side from Windows programs, so the default is set inside.
        "$WINE" reg add 'HKCU\Environment' /v QT_QPA_PLATFORM /d offscreen /f >> "$WINEPREFIX/wineboot.log" 2>&1 9>&-
        touch "$WINEPREFIX/ready"
    ) 9> "$WINEPREFIX.lock"
}
