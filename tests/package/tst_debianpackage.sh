#!/usr/bin/env bash
# The Debian packages, unpacked into an empty folder: the workbench runs out of it, the package names what it needs, and the
# notices name every library in it.
#
#   tst_debianpackage.sh BUILD SOURCE
set -euo pipefail
. "$(dirname "$0")/common.sh" "$@"
command -v dpkg-shlibdeps > /dev/null || { echo "SKIP: dpkg-dev is not installed"; exit 77; }

(cd "$scratch" && "${cmake%cmake}cpack" --config "$build/CPackConfig.cmake" -G DEB -B "$scratch/packages") \
    > "$scratch/cpack.log" 2>&1 || { cat "$scratch/cpack.log"; fail "cpack"; }
architecture=$(dpkg --print-architecture)
runtime=$scratch/packages/file-process_$(project_version)_$architecture.deb
development=$scratch/packages/file-process-dev_$(project_version)_$architecture.deb

depends=$(dpkg-deb -f "$runtime" Depends)
for package in p7zip-full libqt5widgets5 libqt5printsupport5 libqt5gui5 libqt5core5a libgoogle-glog0 libsqlite3-0 zlib1g libpolyclipping libc6 libstdc++6; do
    [[ $depends == *"$package"* ]] || fail "the package does not depend on $package: $depends"
done
[[ $(dpkg-deb -f "$development" Depends) == *"file-process (= $(project_version))"* ]] ||
    fail "file-process-dev takes another file-process: $(dpkg-deb -f "$development" Depends)"

dpkg-deb -x "$runtime" "$scratch/root"
tree=$scratch/root/usr
run_workbench "$tree/bin" "$tree/share/file_process/samples/beacon.tgz"
no_library_of_the_build "$tree"

notices=$tree/share/doc/file-process/copyright
[ -f "$notices" ] || fail "no copyright file"
while read -r library; do
    grep -qF "$(basename "$library")" "$notices" || fail "the copyright file does not name $(basename "$library")"
done < <(find "$tree" -name "*.so*" -type f)
! dpkg-deb -c "$runtime" | grep -E ' \./usr/(include|lib/cmake)' || fail "development files in the runtime package"
dpkg-deb -x "$development" "$scratch/root"
[ -f "$tree/lib/cmake/FileProcess/FileProcessConfig.cmake" ] || fail "file-process-dev has no CMake package"
echo "PASS: $(basename "$runtime"), $(du -k "$runtime" | cut -f 1) kB, depends on $depends"
