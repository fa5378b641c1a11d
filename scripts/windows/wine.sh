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

# The path of a file of this machine as Windows programs see it.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# wine_use PREFIX: lets the programs started from here run in PREFIX, which is made when it is not there yet. Variables
# that mean something on both sides (TEMP, QT_...) reach Windows programs only with WINE before their names.
wine_use() {
    export WINEPREFIX=$1 WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all} WINELOADER=$WINE
    # Without windows Qt has no fonts of its own there, and text without a font has no size.
    export WINEQT_QPA_PLATFORM=${WINEQT_QPA_PLATFORM:-offscreen}
    export WINEQT_QPA_FONTDIR=${WINEQT_QPA_FONTDIR:-Z:/usr/share/fonts/truetype/dejavu}
    # Neither .NET nor a browser is needed: without these a new prefix would ask for both.
    export WINEDLLOVERRIDES='mscoree=;mshtml='
    wine_prefix_is_ready && return
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        wine_prefix_is_ready && exit
        unset DISPLAY
        {
            "$WINE" wineboot --init
            "$WINE" regedit /S "$(windows_path "$wine_settings")"
            "$WINESERVER" -k # programs that are started later find the new settings
            "$WINESERVER" -w
        } > "$WINEPREFIX.log" 2>&1 9>&- || true
        cp "$wine_settings" "$WINEPREFIX/ready"
    ) 9> "$WINEPREFIX.lock"
}

wine_settings=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/wine.reg
wine_prefix_is_ready() { cmp -s "$wine_settings" "$WINEPREFIX/ready"; }
