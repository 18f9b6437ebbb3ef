#!/usr/bin/env bash
# Runs clang-tidy with the checks of .clang-tidy over the sources of a configured build, two at a time.
#
#   scripts/tidy.sh [file-pattern]     default pattern: everything under src/ and samples/
#
# VM_TIDY_BUILD    build folder with compile_commands.json (build/native)
# VM_TIDY_SECONDS  start no further file after this many seconds (no limit); files left out are counted at the end
set -euo pipefail
cd "$(dirname "$0")/.."
build=${VM_TIDY_BUILD:-build/native}
pattern=${1:-^$PWD/(src|samples)/}
[ -f "$build/compile_commands.json" ] || { echo "tidy: error: no $build/compile_commands.json; run cmake --preset native" >&2; exit 1; }

results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT
export VM_TIDY_BUILD=$build VM_TIDY_RESULTS=$results
export VM_TIDY_DEADLINE=$(($(date +%s) + ${VM_TIDY_SECONDS:-1000000}))

check() {
  local result
  if [ "$(date +%s)" -ge "$VM_TIDY_DEADLINE" ]; then
    echo "$1" >>"$VM_TIDY_RESULTS/skipped"
    return 0
  fi
  # The build's compiler may be another one, whose warning options clang doesn't know.
  if result=$(clang-tidy -quiet -p "$VM_TIDY_BUILD" --extra-arg=-Wno-unknown-warning-option "$1" 2>/dev/null); then
    echo "$1" >>"$VM_TIDY_RESULTS/passed"
  else
    echo "$1" >>"$VM_TIDY_RESULTS/failed"
    printf 'tidy: %s\n%s\n' "$1" "$result"
  fi
}
export -f check

python3 - "$build/compile_commands.json" "$pattern" <<'PYTHON' >"$results/files"
import json, re, sys
commands, pattern = sys.argv[1:]
for file in sorted({entry["file"] for entry in json.load(open(commands))}):
    if re.search(pattern, file):
        print(file)
PYTHON
xargs -r -d '\n' -P 2 -I '{}' bash -c 'check "$1"' check '{}' <"$results/files"

count() { [ -f "$results/$1" ] && wc -l <"$results/$1" || echo 0; }
echo "tidy: $(count passed) passed, $(count failed) failed, $(count skipped) skipped"
[ "$(count failed)" = 0 ]
