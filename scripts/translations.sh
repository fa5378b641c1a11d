#!/usr/bin/env bash
# Takes the texts of the sources into src/resources/translations/*.ts, where the translations are written.
#
#   scripts/translations.sh           updates the files; new texts are marked "unfinished" there
#   scripts/translations.sh --check   changes nothing, and fails on texts that have no translation yet
set -euo pipefail
cd "$(dirname "$0")/.."

lupdate=$(PATH=/usr/lib/qt5/bin:$PATH command -v lupdate)
folders=(src/workbench src/drawing src/platform src/plugin src/import src/export src/run)
into=src/resources/translations
if [ "${1:-}" = --check ]; then
    # Beside the others: the places in the files are relative to their folder.
    into=$(mktemp -d)
    trap 'rm -rf "$into"' EXIT
    cp src/resources/translations/*.ts "$into"
fi

for language in en de zh_CN; do
    options=(-I src -locations none -no-obsolete -no-ui-lines -source-language en -target-language "$language")
    [ $language != en ] || options+=(-pluralonly) # the texts are English; only their plurals need more than one form
    "$lupdate" -silent "${options[@]}" "${folders[@]}" -ts "$into/workbench_$language.ts"
done

if [ "${1:-}" = --check ]; then
    missing=0
    for file in "$into"/*.ts; do
        # The text of each message without a translation, with the class it is in.
        awk -v name="$(basename "$file")" '
            /<name>/ { context = $0; gsub(/.*<name>|<\/name>.*/, "", context) }
            /<message/ { text = "" }
            /<source>/ { inside = 1 }
            inside { text = text $0 }
            /<\/source>/ { inside = 0; gsub(/ *<\/?source>/, "", text) }
            /type="unfinished"/ { print name ": " context ": no translation of \"" text "\""; found = 1 }
            END { exit found }' "$file" || missing=1
    done
    [ $missing = 0 ] || { echo "Run scripts/translations.sh and write the translations."; exit 1; }
fi
