#!/usr/bin/env bash
# One whole run of the filter on a picture: sets the machine up, builds for Windows, and lets the real plug-in, the
# real effects application and the real wait dialog work under Wine, on a display of its own. See --help.
set -euo pipefail
caller=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")"
root=$PWD

usage() {
  cat <<'TEXT'
./run.sh [OPTION...] [INPUT.png OUTPUT.png]

Runs the filter on INPUT.png and writes OUTPUT.png, with OUTPUT-before-after.png beside it. Without names it runs on a
landscape that it makes itself, in build/run/. On a fresh Debian 12 machine it first installs what is missing.

  --mode MODE          image mode and planes that the plug-in gets: gray, graya, rgb, rgba, rgb48, rgba64, cmyk, cmyka,
                       cmyk64 or cmyka80; without it what INPUT.png calls for
  --mask MASK.png      a selection, white where selected; as large as INPUT.png
  --record FILE        write the parameters that the plug-in records for an action
  --replay FILE        play recorded parameters back, as an action does
  --cancel-after MS    press Cancel in the wait dialog so many milliseconds after it appeared; no picture is written
  --help

Exit codes: 0 done (or cancelled, when that was asked for), 1 wrong use or a file that can't be read or written, others
as filter_host --help tells.
TEXT
}

fail() { printf 'run.sh: error: %s\n' "$1" >&2; exit 1; }

# --- The command line --------------------------------------------------------------------------

modes="gray graya rgb rgba rgb48 rgba64 cmyk cmyka cmyk64 cmyka80"
mode="" mask="" record="" replay="" cancel_after="" names=()
while [ $# -gt 0 ]; do
  case "$1" in
    --help | -h) usage; exit 0 ;;
    --mode | --mask | --record | --replay | --cancel-after)
      [ $# -ge 2 ] || fail "$1 wants a value; --help tells more"
      case "$1" in
        --mode) mode=$2 ;;
        --mask) mask=$2 ;;
        --record) record=$2 ;;
        --replay) replay=$2 ;;
        --cancel-after) cancel_after=$2 ;;
      esac
      shift 2
      ;;
    -*) fail "unknown option '$1'; --help lists them" ;;
    *) names+=("$1"); shift ;;
  esac
done

# The file as seen from where the caller stands.
absolute() { case "$1" in "" | /*) printf '%s' "$1" ;; *) printf '%s/%s' "$caller" "$1" ;; esac; }

check_png() {
  [ -e "$1" ] || fail "cannot read '$2': no such file"
  [ -f "$1" ] && [ -r "$1" ] || fail "cannot read '$2': not a readable file"
  [ "$(head -c 8 "$1" | od -An -tx1 | tr -d ' \n')" = 89504e470d0a1a0a ] || fail "cannot read '$2': it is not a PNG file"
}

check_writable() {
  [ ! -d "$1" ] || fail "cannot write '$2': it is a folder"
  local probe
  probe=$(mktemp "$(dirname "$1")/.run-sh.XXXXXX" 2>/dev/null) || fail "cannot write '$2': no file can be made in '$(dirname "$1")'"
  rm -f "$probe"
}

case " $modes " in *" ${mode:-rgb} "*) ;; *) fail "--mode wants one of $modes, not '$mode'" ;; esac
case "$cancel_after" in *[!0-9]* | ??????*) fail "--cancel-after wants milliseconds from 0 to 99999, not '$cancel_after'" ;; esac
case ${#names[@]} in
  0) input="" output=$root/build/run/output.png; mkdir -p build/run ;;
  2) input=$(absolute "${names[0]}") output=$(absolute "${names[1]}") ;;
  *) fail "this wants INPUT.png and OUTPUT.png, or neither; --help tells more" ;;
esac
case "$output" in *.png) ;; *) fail "'${names[1]:-}' does not end in .png" ;; esac
mask_name=$mask mask=$(absolute "$mask")
record_name=$record record=$(absolute "$record")
replay_name=$replay replay=$(absolute "$replay")
before_after=${output%.png}-before-after.png
[ -z "$input" ] || check_png "$input" "${names[0]}"
[ -z "$mask" ] || check_png "$mask" "$mask_name"
[ -z "$replay" ] || { [ -f "$replay" ] && [ -r "$replay" ]; } || fail "cannot read '$replay_name': not a readable file"
check_writable "$output" "${names[1]:-$output}"
check_writable "$before_after" "$before_after"
[ -z "$record" ] || check_writable "$record" "$record_name"

# --- Steps and their times ---------------------------------------------------------------------

now() { local t=${EPOCHREALTIME/[.,]/}; printf '%s' $((t / 1000)); }
seconds() { printf '%d.%d s' $(($1 / 1000)) $(($1 % 1000 / 100)); }
started=$(now)
step_started=$started
step() { step_started=$(now); printf '[%s/5] %s\n' "$1" "$2"; }
step_done() { printf '      %s\n' "$1 ($(seconds $(($(now) - step_started))))"; }

work="" xvfb=""
clean_up() {
  local code=$?
  trap - EXIT
  if [ -n "$work" ]; then
    # Ends the private Wine session with everything in it, the application of a cancelled run too.
    [ ! -d "$work/wine" ] || WINEPREFIX=$work/wine WINEDEBUG=-all wineserver -k 2>/dev/null || true
    [ -z "$xvfb" ] || { kill "$xvfb" 2>/dev/null && wait "$xvfb" 2>/dev/null; } || true
    rm -rf "$work" 2>/dev/null || { sleep 1; rm -rf "$work"; } || true
  fi
  exit "$code"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

step 1 "Set up the machine"
scripts/setup.sh || fail "the machine could not be set up"
step_done "ready"

step 2 "Build for 32-bit Windows (build/win32)"
mkdir -p build
(
  flock 9
  cmake --preset win32 >build/run-build.log 2>&1 &&
    NINJA_STATUS='%p ' ninja -j2 -C build/win32 VM_PlugIn Vm filter_host pictures 2>&1 9>&- | tee -a build/run-build.log |
    awk '$1 ~ /^[0-9]+%$/ { p = int($1 / 10) * 10; if (p > last) { last = p; printf "      %d %%\n", p; fflush() } }'
) 9>build/run-build.lock || { tail -n 15 build/run-build.log >&2; fail "the build failed, see build/run-build.log"; }
step_done "build/win32/bin/VM_PlugIn.8bf, Vm.exe, filter_host.exe"

# A folder of its own for the plug-in and the exchange files, and a Wine session and a display of its own, so that runs
# can go on side by side.
scripts/wine-init.sh || fail "the Wine prefix could not be made"
work=$(mktemp -d build/run.XXXXXX)
work=$root/$work
cp -al build/wine "$work/wine" 2>/dev/null || { rm -rf "$work/wine"; cp -a build/wine "$work/wine"; }
# Without a window manager on the display, Wine draws the frames of its windows itself.
cp --remove-destination build/wine/user.reg "$work/wine/user.reg"
printf '\n[Software\\\\Wine\\\\X11 Driver]\n"Managed"="N"\n' >>"$work/wine/user.reg"
export VM_WINEPREFIX=$work/wine
mkdir "$work/plugin"
cp build/win32/bin/VM_PlugIn.8bf build/win32/bin/Vm.exe "$work/plugin/"
windows_program() { local name=$1; shift; scripts/wine-run.sh "build/win32/bin/$name.exe" "$@"; }
# Wine shows the whole file system as drive Z.
win() { [ -z "$1" ] || printf 'Z:%s' "$1"; }

step 3 "Look at the picture"
if [ -z "$input" ]; then
  input=$root/build/run/scene.png
  windows_program pictures scene "$(win "$input")" || fail "the landscape could not be made"
  step_done "made a landscape: ${input#"$root"/}"
else
  step_done "given: ${names[0]}"
fi

step 4 "Run the filter"
# The application holds its answer back for a moment, so that the dialog can be seen, or cancelled.
delay=700
[ -z "$cancel_after" ] || delay=$((cancel_after + 30000))
rm -f build/run/wait-dialog.png
printf 'delay-ms = %s\n' "$delay" >"$work/plugin/Vm.settings"
mkfifo "$work/display"
Xvfb -displayfd 7 -screen 0 1280x960x24 -nolisten tcp 7>"$work/display" >/dev/null 2>&1 &
xvfb=$!
read -r -t 20 number <"$work/display" || fail "Xvfb does not start"
export DISPLAY=:$number

options=(--trace --window --cd 'C:\windows')
[ -z "$mode" ] || options+=(--mode "$mode")
[ -z "$mask" ] || options+=(--mask "$(win "$mask")")
[ -z "$record" ] || options+=(--record "$(win "$record")")
[ -z "$replay" ] || options+=(--replay "$(win "$replay")")
windows_program filter_host "${options[@]}" "$(win "$work/plugin/VM_PlugIn.8bf")" "$(win "$input")" "$(win "$output")" \
  >"$work/host.log" 2>"$work/host.err" &
host=$!
# Shows what the host and the application say, as they say it.
tail -n +1 -q --pid="$host" -s 0.1 -F "$work/host.log" 2>/dev/null | sed -u 's/\r$//; s,Z:/,/,g; s/^/      /' &
tail_job=$!

dialog=""
dialog_seen=$(now)
while kill -0 "$host" 2>/dev/null; do
  if [ -z "$dialog" ]; then
    dialog=$(xdotool search --onlyvisible --name '^Velvetmoor$' 2>/dev/null | head -n 1 || true)
    if [ -n "$dialog" ]; then
      dialog_seen=$(now)
      printf '      the wait dialog is shown\n'
    fi
  elif [ -n "$cancel_after" ] && [ $(($(now) - dialog_seen)) -ge "$cancel_after" ]; then
    eval "$(xdotool getwindowgeometry --shell "$dialog" 2>/dev/null | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
    # The button stands at the bottom right; its middle is 18 of 175 dialog units from the right, 14 of 71 from below.
    xdotool mousemove $((X + WIDTH - WIDTH * 18 / 175)) $((Y + HEIGHT - HEIGHT * 14 / 71)) click 1
    printf '      pressed Cancel\n'
    sleep 1
    dialog_seen=$(now)
  elif [ -z "$cancel_after" ] && [ ! -e build/run/wait-dialog.png ] && [ $(($(now) - dialog_seen)) -ge 250 ]; then
    mkdir -p build/run
    import -window root "build/run/.wait-dialog.$$.png" 2>/dev/null && mv "build/run/.wait-dialog.$$.png" build/run/wait-dialog.png || true
  fi
  sleep 0.05
done
result=0
wait "$host" || result=$?
wait "$tail_job" 2>/dev/null || true
if [ -n "$cancel_after" ] && [ "$result" = 2 ]; then
  step_done "cancelled, as asked: no picture was written"
  exit 0
fi
if [ "$result" != 0 ]; then
  sed 's/\r$//; s,Z:/,/,g' "$work/host.err" >&2
  exit "$result"
fi
step_done "done"

step 5 "Put before and after side by side"
windows_program pictures join "$(win "$input")" "$(win "$output")" "$(win "$before_after")" || fail "the picture could not be joined"
step_done "joined"

# As the caller would name it.
shown() { case "$1" in "$caller"/*) printf '%s' "${1#"$caller"/}" ;; *) printf '%s' "$1" ;; esac; }
printf 'output:       %s\nbefore-after: %s\n' "$(shown "$output")" "$(shown "$before_after")"
[ -z "$record" ] || [ ! -e "$record" ] || printf 'recorded:     %s\n' "$(shown "$record")"
printf 'done in %s\n' "$(seconds $(($(now) - started)))"
