#!/usr/bin/env bash
# The static checks: formatting, the platform border, the direction of includes, and the newest Qt API that the code may use.
#
#   scripts/check.sh [--tidy]     --tidy: also what clang-tidy finds in src, which takes about ten minutes on two cores
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh build check

failed=0
complain() { echo "$1"; failed=1; }

mapfile -t sources < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}" || complain "Formatting: run clang-format -i on the files above."

if git grep -nE '^ *# *(if|ifdef|ifndef|elif).*\b(Q_OS_|_WIN32|__linux__|WIN32)' -- \
        src ':!src/platform' ':!src/archive'; then
    complain "Only src/platform/ and src/archive/ may know which operating system they are on."
fi
scripts/check_includes.py || complain "Includes: the folders depend on each other in one direction only."
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
grep -q "\"version-string\": \"$version\"" vcpkg.json || complain "vcpkg.json: the version is not $version."
if git grep -nE '\b(Qt::(SkipEmptyParts|endl|hex|dec)|QRandomGenerator|QString::asprintf_l|QDeadlineTimer::remaining_ns)\b' -- '*.cpp' '*.h'; then
    complain "Qt 5.9 does not have these."
fi

# tst_layertable.cpp holds the class tst_LayerTable, so that a test that fails names its file.
for test in $(git ls-files 'tests/**/tst_*.cpp'); do
    grep -Eio '^class tst_\w+ : public QObject' "$test" | grep -qi "^class $(basename "$test" .cpp) " ||
        complain "$test: the test class is to have the name of its file."
done

scripts/translations.sh --check || complain "Translations: texts above are in one language only."

for script in scripts/*.sh scripts/windows/*.sh .ci/run; do
    bash -n "$script" || complain "$script does not parse."
    # wine.sh is sourced by the others.
    [ -x "$script" ] || [ "$script" = scripts/windows/wine.sh ] || complain "$script is not executable."
done

if [ "${1:-}" = --tidy ]; then
    cmake -S . -B build/tidy -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBUILD_TESTING=OFF -DCMAKE_EXPORT_COMPILE_COMMANDS=ON >/dev/null
    run-clang-tidy -p build/tidy -quiet "^$PWD/src/" >build/tidy/findings.txt 2>&1 ||
        { grep -E 'error:|warning:' build/tidy/findings.txt | sort -u; complain "clang-tidy: all of it is in build/tidy/findings.txt."; }
fi

[ $failed -eq 0 ] && echo "Static checks passed."
exit $failed
