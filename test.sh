#!/usr/bin/env bash
# Sets up the machine, builds, and runs every test. The closing lines of every runner are printed once more at the
# end; the exit code is 0 only if all of them passed.
#
#   ./test.sh                 everything
#   ./test.sh lint            layout, include order, clang-tidy
#   ./test.sh native          unit tests on Linux, benchmarks once
#   ./test.sh asan            unit tests under the address and undefined behaviour sanitizers
#   ./test.sh win32           unit tests as Windows programs under Wine, then the system tests
#   ./test.sh system          only the system tests, on the built Windows programs
#   ./test.sh fuzz            every fuzzer for a while
# Several stages can be named. Full output of every step is kept in build/logs/.
#
# VM_FUZZ_SECONDS   seconds for each fuzzer (20)
# VM_TIDY_SECONDS   clang-tidy starts no further file after this many seconds (150)
set -uo pipefail
cd "$(dirname "$0")"
root=$PWD
logs=$root/build/logs
mkdir -p "$logs"

stages=("$@")
[ $# -gt 0 ] || stages=(lint native asan win32 fuzz)
for stage in "${stages[@]}"; do
  case $stage in
    lint | native | asan | win32 | system | fuzz) ;;
    *) echo "test: error: unknown stage '$stage' (lint, native, asan, win32, system, fuzz)" >&2; exit 2 ;;
  esac
done

closing=()  # "title|file with the closing lines", in the order of the runs
failed=()
started=$SECONDS

say() { printf '\n=== [%3d:%02d] %s\n' $(((SECONDS - started) / 60)) $(((SECONDS - started) % 60)) "$1"; }

# closes <title> <log> <first line of the summary>: keeps a log from the last match on for the end of the run.
closes() {
  local file=$logs/closing-${#closing[@]}.txt
  awk -v pattern="$3" '$0 ~ pattern { text = "" ; found = 1 } found { text = text $0 "\n" } END { printf "%s", text }' "$2" >"$file"
  [ -s "$file" ] || printf '(ended without a summary; see %s)\n' "$2" >"$file"
  closing+=("$1|$file")
}

fails() {
  failed+=("$1")
  printf 'test: FAILED: %s\n' "$1" >&2
}

# Configures and builds a preset; shows a line now and then, and the end of the log when it fails.
build() {
  local preset=$1 log=$logs/build-$1.log
  say "$preset: configuring and building"
  if ! cmake --preset "$preset" >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    printf '%s: could not be configured (%s)\n' "$preset" "$log" >"$logs/closing-${#closing[@]}.txt"
    closing+=("$preset: configure|$logs/closing-${#closing[@]}.txt")
    fails "$preset: configure"
    return 1
  fi
  cmake --build --preset "$preset" -- -k 0 2>&1 | tee -a "$log" | awk '
    match($0, /^\[[0-9]+\/[0-9]+\]/) {
      split(substr($0, 2, RLENGTH - 2), at, "/")
      tenth = int(at[1] * 10 / at[2])
      if (tenth != shown) { shown = tenth; print; fflush() }
    }'
  if [ "${PIPESTATUS[0]}" != 0 ]; then
    grep -nE -A 12 'FAILED:|error:' "$log" | head -n 120 >&2
    printf '%s: build failed (%s)\n' "$preset" "$log" >"$logs/closing-${#closing[@]}.txt"
    closing+=("$preset: build|$logs/closing-${#closing[@]}.txt")
    fails "$preset: build"
    return 1
  fi
}

run_ctest() {
  local preset=$1 log=$logs/ctest-$1.log
  say "$preset: tests"
  ctest --preset "$preset" </dev/null 2>&1 | tee "$log" |
    awk '/ Passed +[0-9.]+ sec$/ { if (++passed % 250 == 0) { print; fflush() } next } /^ +Start +[0-9]+:/ { next } { print; fflush() }'
  local status=${PIPESTATUS[0]}
  closes "$preset: ctest" "$log" '% tests passed,'
  [ "$status" = 0 ] || fails "$preset: tests"
}

# A display of our own for windows, and a Wine prefix that nobody else starts programs in.
display_pid=
start_display() {
  [ -z "$display_pid" ] || return 0
  local file=$logs/display
  : >"$file"
  Xvfb -displayfd 7 -screen 0 1280x1024x24 -nolisten tcp >"$logs/xvfb.log" 2>&1 7>"$file" </dev/null &
  display_pid=$!
  local i
  for ((i = 0; i < 100; ++i)); do
    [ -s "$file" ] && break
    sleep 0.1
  done
  [ -s "$file" ] || { fails "Xvfb did not start (see $logs/xvfb.log)"; return 1; }
  DISPLAY=:$(tr -d '[:space:]' <"$file")
  VM_WINEPREFIX=$root/build/wine-test
  export DISPLAY VM_WINEPREFIX
  scripts/wine-init.sh || { fails "Wine could not be set up"; return 1; }
}
stop_display() {
  [ -n "$display_pid" ] || return 0
  # Ends what still runs in our own prefix, and only that.
  WINEPREFIX=$VM_WINEPREFIX timeout 20 wineserver -k >/dev/null 2>&1
  kill "$display_pid" 2>/dev/null
  wait "$display_pid" 2>/dev/null
  display_pid=
}
trap stop_display EXIT
trap 'exit 130' INT TERM

stage_native() { build native && run_ctest native; }
stage_asan() { build asan && run_ctest asan; }

stage_win32() {
  start_display || return
  build win32 || return
  run_ctest win32
  [ ! -f tests/system/run.py ] || system_tests
}

stage_system() {
  start_display || return
  build win32 && system_tests
}

system_tests() {
  local log=$logs/system.log
  say "system tests"
  if [ ! -f tests/system/run.py ]; then
    fails "system: there is no tests/system/run.py"
    return
  fi
  VM_BIN_DIR=$root/build/win32/bin VM_WINE_RUN=$root/scripts/wine-run.sh \
    timeout 900 python3 tests/system/run.py </dev/null 2>&1 | tee "$log"
  local status=${PIPESTATUS[0]}
  tail -n 3 "$log" >"$logs/closing-${#closing[@]}.txt"
  closing+=("system tests|$logs/closing-${#closing[@]}.txt")
  [ "$status" = 0 ] || fails "system tests"
}

fuzz_one() {
  local program=$1 name seeds work log status
  name=$(basename "$program")
  seeds=$VM_ROOT/fuzz/corpus/${name#fuzz_}
  work=$VM_ROOT/build/fuzz/$name
  log=$VM_LOGS/$name.log
  mkdir -p "$work/found" "$work/corpus"
  local folders=("$work/corpus")
  [ -d "$seeds" ] && folders+=("$seeds")
  # The images that come with libpng's source make good seeds, the hostile ones among them.
  [ "$name" = fuzz_Png ] && folders+=("$VM_ROOT"/build/deps/src/libpng/contrib/{pngsuite,testpngs})
  (cd "$work" && timeout $((VM_FUZZ_SECONDS + 120)) "$program" -max_total_time="$VM_FUZZ_SECONDS" -timeout=20 \
    -rss_limit_mb=2048 -malloc_limit_mb=1024 -artifact_prefix="$work/found/" -print_final_stats=1 "${folders[@]}") >"$log" 2>&1
  status=$?
  if [ $status = 0 ]; then
    echo "$name" >>"$VM_LOGS/fuzz-passed"
    echo "$name: $(awk '/stat::number_of_executed_units/ {print $2}' "$log") inputs, nothing found"
  else
    echo "$name" >>"$VM_LOGS/fuzz-failed"
    echo "$name: FAILED (exit code $status), the input is under $work/found, the log is $log"
    tail -n 60 "$log"
  fi
}

stage_fuzz() {
  build asan || return
  say "fuzzers, ${VM_FUZZ_SECONDS:=20} seconds each"
  rm -f "$logs/fuzz-passed" "$logs/fuzz-failed"
  touch "$logs/fuzz-passed" "$logs/fuzz-failed"
  export VM_ROOT=$root VM_LOGS=$logs VM_FUZZ_SECONDS
  export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:allocator_may_return_null=1
  export UBSAN_OPTIONS=print_stacktrace=1 LSAN_OPTIONS=suppressions=$root/cmake/lsan.supp:print_suppressions=0
  export -f fuzz_one
  # Only fuzzers that still have a source: a build folder keeps the programs of removed ones.
  local source programs=()
  for source in fuzz/*.cpp; do
    [ -f "$source" ] && programs+=("$root/build/asan/bin/fuzz_$(basename "$source" .cpp)")
  done
  if [ ${#programs[@]} -gt 0 ]; then
    printf '%s\0' "${programs[@]}" | xargs -0 -P 2 -I '{}' bash -c 'fuzz_one "$1"' fuzz_one '{}'
  fi
  unset ASAN_OPTIONS UBSAN_OPTIONS LSAN_OPTIONS
  local bad
  bad=$(wc -l <"$logs/fuzz-failed")
  echo "fuzz: $(wc -l <"$logs/fuzz-passed") passed, $bad failed" | tee "$logs/closing-${#closing[@]}.txt"
  closing+=("fuzzers|$logs/closing-${#closing[@]}.txt")
  [ "$bad" = 0 ] || fails "fuzzers"
}

stage_lint() {
  local log=$logs/lint.log status
  say "layout (clang-format)"
  mapfile -d '' -t sources < <(find src samples tests bench fuzz -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.inl' \) -print0 | sort -z)
  local wrong=0 total=${#sources[@]}
  if [ "$total" -gt 0 ] && ! clang-format --dry-run -Werror "${sources[@]}" >"$log" 2>&1; then
    wrong=$(grep -E '^[^ ].*:[0-9]+:[0-9]+: error:' "$log" | cut -d: -f1 | sort -u | wc -l)
    grep -E ': error:' "$log" | cut -d: -f1,2 | sort -u | head -n 40
    echo "lay them out with: clang-format -i FILE..."
    fails "lint: layout"
  fi
  echo "format: $((total - wrong)) passed, $wrong failed" | tee "$logs/closing-${#closing[@]}.txt"
  closing+=("clang-format|$logs/closing-${#closing[@]}.txt")

  say "include order"
  python3 scripts/check-layers.py 2>&1 | tee "$log"
  status=${PIPESTATUS[0]}
  tail -n 1 "$log" >"$logs/closing-${#closing[@]}.txt"
  closing+=("include order|$logs/closing-${#closing[@]}.txt")
  [ "$status" = 0 ] || fails "lint: include order"

  say "clang-tidy"
  if cmake --preset native >"$logs/tidy-configure.log" 2>&1; then
    VM_TIDY_SECONDS=${VM_TIDY_SECONDS:-150} scripts/tidy.sh 2>&1 | tee "$logs/tidy.log"
    status=${PIPESTATUS[0]}
    closes "clang-tidy" "$logs/tidy.log" '^tidy: [0-9]+ passed'
    [ "$status" = 0 ] || fails "lint: clang-tidy"
  else
    tail -n 20 "$logs/tidy-configure.log" >&2
    fails "lint: native could not be configured for clang-tidy"
  fi
}

say "setting up"
scripts/setup.sh || exit 1

for stage in "${stages[@]}"; do
  "stage_$stage"
done
stop_display

say "summary"
for entry in "${closing[@]}"; do
  printf -- '--- %s\n' "${entry%%|*}"
  cat "${entry#*|}"
done
if [ ${#failed[@]} -gt 0 ]; then
  printf '\ntest: FAILED:\n'
  printf '  %s\n' "${failed[@]}"
  exit 1
fi
printf '\ntest: all stages passed (%s)\n' "${stages[*]}"
