#!/usr/bin/env bash
# Builds what the Windows programs need and Debian has no Windows package of: 7-Zip's 7z.dll, glog, SQLite,
# Clipper and Qt 5, from the distribution's own source packages. Everything lands in one cache folder and is built
# once; after an interruption the components that are complete stay, and the one that was being made starts afresh.
#
#   scripts/windows/dependencies.sh          FILE_PROCESS_WINDOWS_DEPS names the folder (default: the user's cache)
set -euo pipefail

deps=${FILE_PROCESS_WINDOWS_DEPS:-${XDG_CACHE_HOME:-$HOME/.cache}/file_process/windows}
prefix=$deps/prefix
here=$(cd "$(dirname "$0")" && pwd)
toolchain=$here/../../cmake/mingw-w64.cmake
host=x86_64-w64-mingw32
jobs=${FILE_PROCESS_JOBS:-$(nproc)}

main() {
    mkdir -p "$deps"/{sources,build,logs,stamps} "$prefix"/{bin,include,lib}
    exec 9>"$deps/lock"
    flock -n 9 || { say "another run is filling $deps; waiting for it"; flock 9; }
    prefer_posix_compilers
    component 7zip    1 7zip                   build_7zip
    component glog    1 google-glog            build_glog
    component sqlite  1 sqlite3                build_sqlite
    component clipper 1 libpolyclipping        build_clipper
    # Headers alone: those of the distribution's package libutfcpp-dev serve Windows as well.
    cp -R /usr/include/utf8cpp "$prefix/include/"
    component qt      3 qtbase-opensource-src  build_qt
    collect_licences
    say "dependencies complete in $deps"
}

# --- the components ---------------------------------------------------------------------------------------------------

# 7-Zip's own make file knows MinGW; it asks for a Windows shell unless MSYSTEM says that there is a Unix one.
build_7zip() {
    cd "$1/CPP/7zip/Bundles/Format7zF"
    run "7-Zip: compile" make -j"$jobs" -f ../../cmpl_gcc.mak SYSTEMDRIVE=1 MSYSTEM=1 DISABLE_RAR=1 O="$1/../out" \
        CC=$host-gcc-posix CXX=$host-g++-posix RC=$host-windres CFLAGS_WARN_WALL=-w
    install -m 755 "$1/../out/7z.dll" "$prefix/bin/7z.dll"
}

build_glog() {
    run "glog: configure" cmake -S "$1" -B "$1/../out" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_SHARED_LIBS=ON \
        -DWITH_GFLAGS=OFF -DWITH_GTEST=OFF -DWITH_UNWIND=OFF -DBUILD_TESTING=OFF
    run "glog: compile" ninja -C "$1/../out" -j "$jobs" install
}

# The amalgamation is what SQLite's authors advise to compile; making it needs a C compiler of this machine and Tcl.
build_sqlite() {
    mkdir -p "$1/../out" && cd "$1/../out"
    run "SQLite: configure" "$1/configure" --disable-tcl
    run "SQLite: amalgamation" make sqlite3.c
    run "SQLite: compile" $host-gcc-posix -O2 -s -shared -DSQLITE_THREADSAFE=1 -DSQLITE_OMIT_LOAD_EXTENSION \
        '-DSQLITE_API=__declspec(dllexport)' sqlite3.c -o sqlite3.dll -Wl,--out-implib,libsqlite3.dll.a
    install -m 755 sqlite3.dll "$prefix/bin"
    install -m 644 sqlite3.h "$prefix/include"
    install -m 644 libsqlite3.dll.a "$prefix/lib"
}

# One source file; what the distribution's package of it holds, made for Windows.
build_clipper() {
    mkdir -p "$1/../out" "$prefix/include/polyclipping" && cd "$1/../out"
    run "Clipper: compile" $host-g++-posix -O2 -c "$1/cpp/clipper.cpp" -o clipper.o
    run "Clipper: archive" $host-ar rcs libpolyclipping.a clipper.o
    install -m 644 libpolyclipping.a "$prefix/lib"
    install -m 644 "$1/cpp/clipper.hpp" "$prefix/include/polyclipping"
}

# Left out is what the programs do not use, and MinGW's stack alignment breaks: processor extensions beyond the base.
# Accessibility and tablet events are off because Debian's tarball lacks two bundled headers they need.
build_qt() {
    local options=() feature
    for feature in "${unused_qt_features[@]}"; do options+=("-no-feature-$feature"); done
    mkdir -p "$1/../out" && cd "$1/../out"
    run "Qt: configure" env MAKEFLAGS=-j"$jobs" "$1/configure" -opensource -confirm-license -release -shared \
        -xplatform win32-g++ -device-option CROSS_COMPILE=$host- -prefix "$prefix" \
        -no-opengl -no-angle -no-icu -no-dbus -no-openssl -no-sql-sqlite -no-libjpeg -no-gif -no-ico \
        -qt-zlib -qt-pcre -qt-libpng -qt-freetype -qt-harfbuzz -nomake examples -nomake tests -pch \
        -no-ssse3 -no-sse4.1 -no-sse4.2 -no-avx -no-avx2 -no-avx512 "${options[@]}"
    run "Qt: compile (10 to 30 minutes on two cores)" make -j"$jobs"
    run "Qt: install" make install
}

unused_qt_features=(
    # whole modules
    sql network xml concurrent
    # see above
    accessibility tabletevent
    # Core
    etw hijricalendar islamiccivilcalendar jalalicalendar sharedmemory statemachine systemsemaphore timezone
    concatenatetablesproxymodel transposeproxymodel
    # Gui
    movie sessionmanager systemtrayicon textmarkdownreader textmarkdownwriter textodfwriter vulkan
    # Widgets
    calendarwidget columnview commandlinkbutton datawidgetmapper dial fontcombobox fontdialog graphicseffect
    graphicsview keysequenceedit lcdnumber mdiarea scroller splashscreen syntaxhighlighter undocommand wizard
)

# The terms of all that the Windows package holds, in prefix/licences: out of the source packages, and what Debian's packages
# of MinGW-w64 say of themselves. Made again when a source package is another.
collect_licences() {
    local folder=$prefix/licences stamp=$deps/stamps/licences sources=$deps/sources package
    for package in 7zip google-glog sqlite3 libpolyclipping qtbase-opensource-src; do fetch_source "$package"; done
    if [ -e "$stamp" ] && cat "$sources"/*/version | cmp -s - "$stamp"; then return; fi
    say "collect the licences"
    rm -rf "$folder" && mkdir -p "$folder"/{zlib,gcc,mingw-w64,utfcpp,qt/parts}
    licences_of 7zip 7-zip '*/DOC/License.txt' '*/DOC/copying.txt'
    licences_of google-glog glog '*/COPYING'
    licences_of sqlite3 sqlite '*/LICENSE.md'
    licences_of libpolyclipping clipper '*/License.txt'
    licences_of qtbase-opensource-src qt '*/LICENSE.LGPL3' '*/LICENSE.LGPLv3' '*/LICENSE.GPL3'
    local parts=(zlib pcre2 double-conversion freetype harfbuzz-ng libpng tinycbor sha3 rfc6234 easing md4c)
    local patterns=() part file
    for part in "${parts[@]}"; do patterns+=("*/src/3rdparty/$part/*LICEN*" "*/src/3rdparty/$part/COPYING*"); done
    licences_of qtbase-opensource-src qt/parts "${patterns[@]}" '*/src/corelib/*_LICENSE.txt' '*/src/corelib/io/PSL-LICENSE.txt'
    for file in zlib:libz-mingw-w64 gcc:gcc-mingw-w64-x86-64-posix-runtime mingw-w64:mingw-w64-x86-64-dev utfcpp:libutfcpp-dev; do
        cp "/usr/share/doc/${file#*:}/copyright" "$folder/${file%%:*}/copyright.txt"
    done
    cp /usr/share/common-licenses/GPL-3 "$folder/gcc/GPL-3.txt"
    cat "$sources"/*/version > "$stamp"
}

# licences_of PACKAGE FOLDER PATTERN...: the files of a source package that match, with the folders that tell them apart.
licences_of() {
    local package=$1 to=$prefix/licences/$2 tree=$deps/build/licences file name
    shift 2
    rm -rf "$tree" && mkdir -p "$tree" "$to"
    # A pattern that nothing matches is no error: the check of the package looks for what has to be there.
    tar -C "$tree" --wildcards -xf "$(find "$deps/sources/$package" -name '*.orig.tar.*' ! -name '*.asc')" "$@" 2>/dev/null || true
    while read -r file; do
        name=$(realpath --relative-to="$tree" "$file" | sed 's#^[^/]*/##; s#^src/##; s#^3rdparty/##; s#/#-#g')
        case $name in *.txt) ;; *) name=$name.txt ;; esac
        cp "$file" "$to/$name"
    done < <(find "$tree" -type f)
    rm -rf "$tree"
}

# Qt's make files call the compilers by their bare names, and those are another flavour on some machines.
prefer_posix_compilers() {
    mkdir -p "$deps/compilers"
    local tool
    for tool in gcc g++; do
        ln -sfn "$(command -v $host-$tool-posix)" "$deps/compilers/$host-$tool"
    done
    PATH=$deps/compilers:$PATH
}

# --- how a component is made ------------------------------------------------------------------------------------------

# component NAME RECIPE PACKAGE BUILDER: makes NAME from the source package PACKAGE unless it is there already.
# BUILDER gets the folder of the unpacked sources. Count RECIPE up when a builder changes what it makes.
component() {
    local name=$1 recipe=$2 package=$3 builder=$4 stamp=$deps/stamps/$1
    if [ -e "$stamp" ] && grep -qx "recipe $recipe" "$stamp"; then
        say "$name: there ($(head -n 1 "$stamp"))"
        return
    fi
    local started=$SECONDS
    fetch_source "$package"
    local version tree=$deps/build/$name
    version=$(cat "$deps/sources/$package/version")
    say "$name: unpack $package $version"
    # Never on top of an interrupted build: a compiler that was killed leaves object files that look complete.
    rm -rf "$tree" && mkdir -p "$tree/tree"
    tar -C "$tree/tree" --strip-components=1 -xf "$(find "$deps/sources/$package" -name '*.orig.tar.*' ! -name '*.asc')"
    (log=$deps/logs/$name.log; : > "$log"; "$builder" "$tree/tree")
    printf '%s\nrecipe %s\n' "$package $version" "$recipe" > "$stamp.new"
    mv "$stamp.new" "$stamp"
    rm -rf "$tree"
    say "$name: done in $(minutes $((SECONDS - started)))"
}

# Downloads the upstream tarball of a source package, checked by apt against the archive's signature.
fetch_source() {
    local package=$1 folder=$deps/sources/$1
    [ -e "$folder/version" ] && return
    source_lists
    say "$package: download the source package"
    rm -rf "$folder" && mkdir -p "$folder"
    (cd "$folder" && private_apt -qq source --download-only "$package")
    basename "$folder"/*.dsc .dsc | sed 's/^[^_]*_//' > "$folder/version.new"
    mv "$folder/version.new" "$folder/version"
}

# Source package lists of this machine's own Debian or Ubuntu archives, kept in the cache folder: the system's package
# sources stay as they are, and no rights are needed.
source_lists() {
    local list=$deps/apt/sources.list
    [ -n "${lists_are_fresh:-}" ] && return
    mkdir -p "$deps"/apt/lists/partial "$deps"/apt/cache/archives/partial
    apt-get indextargets --format '$(ORIGIN)|$(REPO_URI)|$(RELEASE)|$(COMPONENT)' 'Created-By: Packages' |
        awk -F'|' '$1 == "Debian" || $1 == "Ubuntu" {
            printf "deb-src [signed-by=/usr/share/keyrings/%s-archive-keyring.gpg] %s %s %s\n", tolower($1), $2, $3, $4
        }' | sort -u > "$list"
    [ -s "$list" ] || fail "apt-get knows no Debian or Ubuntu archive here; run apt-get update first"
    say "read the lists of source packages"
    private_apt -qq update
    lists_are_fresh=yes
}

private_apt() {
    apt-get -o Dir::Etc::SourceList="$deps/apt/sources.list" -o Dir::Etc::SourceParts=/dev/null \
        -o Dir::State::Lists="$deps/apt/lists" -o Dir::Cache="$deps/apt/cache" -o APT::Sandbox::User="$(id -un)" \
        -o Acquire::Retries=3 "$@"
}

# --- showing what happens ---------------------------------------------------------------------------------------------

say() { printf '[windows] %s\n' "$*"; }
fail() { printf '[windows] error: %s\n' "$*" >&2; exit 1; }
minutes() { printf '%d:%02d min' $(($1 / 60)) $(($1 % 60)); }

# run LABEL COMMAND...: the output goes to the component's log; every 20 seconds a line tells how far it is.
run() {
    local label=$1 started=$SECONDS status=0 shown=$SECONDS
    shift
    say "$label"
    printf '\n== %s\n' "$*" >> "$log"
    # It keeps the lock: when this script alone is killed, the next run waits for what it left running.
    "$@" >> "$log" 2>&1 < /dev/null &
    local pid=$!
    trap 'kill '"$pid"' 2>/dev/null' EXIT
    while kill -0 "$pid" 2>/dev/null; do
        sleep 1
        if ((SECONDS - shown >= 20)); then
            shown=$SECONDS
            say "$label: $(minutes $((SECONDS - started))), $(wc -l < "$log") steps, now $(now_at)"
        fi
    done
    wait "$pid" || status=$?
    trap - EXIT
    if ((status)); then
        tail -n 40 "$log" >&2
        fail "$label failed with exit code $status; the whole log is $log"
    fi
}

# The source file that the end of the log is about.
now_at() {
    local line
    line=$(tail -n 40 "$log" | grep -aoE '[A-Za-z0-9_+-]+\.(cpp|cc|c|rc|S)\b' | tail -n 1) || true
    echo "${line:-at the start}"
}

main "$@"
