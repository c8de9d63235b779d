#!/bin/bash
# What the recorder does in a process on a card. check.sh CASE RECORDER REPLAY CALLER WORK_DIRECTORY [EMULATOR...]
# The recorder is preloaded, unless RECORDER is "linked": then the caller has it in its link order.
set -u
case=$1 recorder=$2 replay=$3 caller=$4 work=$5/$1
shift 5
emulator=("$@")
rm -rf "$work"
mkdir -p "$work"
recording=$work/card.rec
failures=0

read -ra settings <<<"${SETTINGS:-}"
read -ra arguments <<<"${ARGUMENTS:-}"

fail() { echo "$case: $*"; failures=$((failures + 1)); }

# run [NAME=VALUE...] -- COMMAND...: with the recorder in front.
run() {
  local settings=()
  while [ "$1" != -- ]; do settings+=("$1"); shift; done
  shift
  if [ "$recorder" != linked ]; then
    # An emulator is told apart from the program that it runs.
    if [ ${#emulator[@]} -gt 0 ]; then settings+=("QEMU_SET_ENV=LD_PRELOAD=$recorder")
    else settings+=("LD_PRELOAD=$recorder"); fi
  fi
  env "${settings[@]}" "${emulator[@]}" "$@"
}
record() { run "HAL_CARD_RECORDING=$recording" "$@"; }
replays() {
  "${emulator[@]}" "$replay" "$1" >"$work/replay.txt" 2>&1 || { fail "the replay of $1 differs:"; tail -40 "$work/replay.txt"; }
}
holds() { grep -qF -- "$2" "$1" || { fail "$(basename "$1") lacks: $2"; tail -20 "$1"; }; }
lacks() { ! grep -qF -- "$2" "$1" || fail "$(basename "$1") holds: $2"; }

case $case in
  same)  # the card sees the same calls with and without it, in the same order
    "${emulator[@]}" "$caller" all >"$work/without.txt" 2>/dev/null
    record -- "$caller" all >"$work/with.txt" 2>"$work/errors.txt"
    [ -s "$work/with.txt" ] && diff "$work/without.txt" "$work/with.txt" || fail "the card saw something else"
    [ ! -s "$work/errors.txt" ] || { fail "not silent"; cat "$work/errors.txt"; }
    replays "$recording"
    holds "$work/replay.txt" "12 requests replayed, no differences"
    holds "$recording" '     client "asks \\"twice\\"\n" calls install-host 30 vlan=10 lim=0x1000063'
    holds "$recording" ' gets threw std::out_of_range: HAL ID not found'
    holds "$recording" '   => threw std::runtime_error: no\nroom'
    case $work in
      */symbolic/*) lacks "$recording" 'IntfObject::ToString' ;;
      *) holds "$recording" 'IntfObject::ToString(deep=true) = intf 2' ;;
    esac
    holds "$recording" 'limid_to_intfname(limid=0x1000001, size=64) = 0 -> name=eth1'
    # What the client asked of the platform itself is not the module's call.
    lacks "$recording" "limid=0x100002f" ;;
  off)  # without a recording nothing is written and nothing is different
    "${emulator[@]}" "$caller" all >"$work/without.txt" 2>/dev/null
    run -- "$caller" all >"$work/with.txt" 2>"$work/errors.txt"
    [ -s "$work/with.txt" ] && diff "$work/without.txt" "$work/with.txt" || fail "the card saw something else"
    [ "$(ls "$work")" = $'errors.txt\nwith.txt\nwithout.txt' ] || fail "there are files" ;;
  edited)  # every kind of difference is told with its request
    record -- "$caller" all >/dev/null
    sed -e '0,/UpdateEgress/s/\(UpdateEgress.*\)port=2/\1port=3/' -e '0,/log 7: Tunnel Label 1/{/log 7: Tunnel Label 1/d}' \
      -e '0,/is told id=20/s/is told id=20/is told id=21/' -e '$s/=> 0/=> -1/' "$recording" >"$work/edited.rec"
    "${emulator[@]}" "$replay" "$work/edited.rec" >"$work/replay.txt" 2>&1
    [ $? = 1 ] || fail "exit status is not 1"
    for line in '- *EgressManager::UpdateEgress(.*port=3' '+ *EgressManager::UpdateEgress(.*port=2' \
        '+ *log 7: Tunnel Label 1 is 200' '- *client .* is told id=21' '+ *client .* is told id=20' '-   => -1' \
        '+   => 0' 'line [0-9]*: install-mpls 20' 'line [0-9]*: destroy-mpls 20' '3 of them differ'; do
      grep -q -- "$line" "$work/replay.txt" || { fail "the replay lacks: $line"; cat "$work/replay.txt"; }
    done ;;
  dies)  # a process that dies leaves all that it has written, to the last line
    (record -- "$caller" die >/dev/null 2>&1) 2>/dev/null
    tail -1 "$recording" | grep -q 'client killer is told id=20' || { fail "the last line is not the last that was seen"; tail -3 "$recording"; }
    replays "$recording"
    holds "$work/replay.txt" "the recording ends in the request of line" ;;
  threads)  # a second thread's request is not mixed in
    record -- "$caller" threads >"$work/out.txt"
    holds "$work/out.txt" "CreateIngress(unit=0, vrf=2, flags=0x0) = 0"
    lacks "$recording" "vrf=2"
    holds "$recording" "! not recorded: 1 requests of a second thread"
    holds "$recording" "vrf=3"
    replays "$recording" ;;
  pauses)  # a signal pauses and resumes, and what came in between stands in the recording
    record HAL_CARD_RECORDING_SIGNAL=USR1 -- "$caller" pause >/dev/null
    lacks "$recording" "install-mpls"
    holds "$recording" "! paused"
    holds "$recording" "has destination 20 intf=2 egress=100001"
    holds "$recording" "has client waits notify"
    holds "$recording" "client waits is told id=20 port=2"
    replays "$recording" ;;
  rotates)  # the disk holds two files of about the limit at most, and each can be replayed
    record HAL_CARD_RECORDING_LIMIT=64k -- "$caller" count 2000
    for file in "$recording" "$recording.1"; do
      [ "$(stat -c %s "$file")" -lt 80000 ] || fail "$file is larger than its limit"
      replays "$file"
      holds "$file" "has destination 10 intf=1 egress=0"
    done
    [ "$(ls "$work" | grep -c '^card.rec')" = 2 ] || fail "there are more files" ;;
  full)  # a file that cannot grow any more: the process goes on, the last line counts what is missing
    record -- "$caller" full 2000 2>"$work/errors.txt" || fail "the process did not go on"
    holds "$work/errors.txt" "card.rec: File too large; the recording stops"
    missing=$(tail -1 "$recording" | sed -n 's/.*! the recording stopped, File too large: *\([0-9]*\) lines are missing$/\1/p')
    HAL_CARD_RECORDING=$work/whole.rec
    recording=$work/whole.rec record -- "$caller" count 2000
    whole=$(wc -l <"$work/whole.rec") found=$(wc -l <"$work/card.rec")
    [ "$((found - 1 + ${missing:-0}))" = "$whole" ] || fail "$found lines, and $missing missing, of $whole"
    replays "$work/card.rec"
    run HAL_CARD_RECORDING=/dev/full -- "$caller" count 10 2>"$work/errors.txt" || fail "the process did not go on"
    holds "$work/errors.txt" "/dev/full: No space left on device; the recording stops"
    run HAL_CARD_RECORDING=/nowhere/card.rec -- "$caller" count 10 2>"$work/errors.txt" || fail "the process did not go on"
    holds "$work/errors.txt" "cannot write /nowhere/card.rec: No such file or directory; nothing is recorded" ;;
  settings)  # what is set wrongly is said
    record HAL_CARD_RECORDING_LIMIT=much HAL_CARD_RECORDING_SIGNAL=LOUD -- "$caller" count 10 2>"$work/errors.txt"
    holds "$work/errors.txt" "HAL_CARD_RECORDING_LIMIT=much is no size"
    holds "$work/errors.txt" "HAL_CARD_RECORDING_SIGNAL=LOUD is no signal"
    replays "$recording" ;;
  behind)  # a program of the tests finds with it in front what it finds without, and all of it can be replayed
    (cd "$work" && record "${settings[@]}" -- "$caller" "${arguments[@]}" >"$work/out.txt" 2>&1) ||
      { fail "the program fails"; tail -40 "$work/out.txt"; }
    replays "$recording"
    grep -qE '^[0-9]{2,} requests replayed, no differences' "$work/replay.txt" || { fail "few requests"; tail "$work/replay.txt"; } ;;
  lacking)  # a platform that lacks functions is named at load
    record -- "$caller" 2>"$work/errors.txt" || fail "the process did not run"
    holds "$work/errors.txt" "the platform behind it does not define these functions"
    holds "$work/errors.txt" "  EgressManager::UpdateEgress"
    lacks "$work/errors.txt" "  fm_init"
    [ ! -e "$recording" ] || fail "there is a recording" ;;
  console)  # the command records a scenario, and replays it
    (cd "$work" && "$caller" run --quiet --record card.rec "${arguments[0]}/provider-edge.scn") >"$work/out.txt" 2>&1 ||
      { fail "the scenario fails"; cat "$work/out.txt"; }
    "$caller" replay "$recording" >"$work/replay.txt" 2>&1 || fail "the replay fails"
    grep -qE "^[0-9]{3} requests replayed, no differences" "$work/replay.txt" || { fail "few requests"; cat "$work/replay.txt"; }
    sed -i '0,/CreateIngress(unit=0, vrf=1,/s//CreateIngress(unit=0, vrf=7,/' "$recording"
    "$caller" replay "$recording" >"$work/replay.txt" 2>&1
    [ $? = 1 ] || fail "exit status of a replay that differs is not 1"
    holds "$work/replay.txt" "-     IngressManager::CreateIngress(unit=0, vrf=7, flags=0x0) = 0"
    "$caller" run --record "$work/card.rec/none" "${arguments[0]}/packets.scn" >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of a file that cannot be written is not 2"
    holds "$work/out.txt" "softcard: cannot write $work/card.rec/none: Not a directory; name another file"
    "$caller" run --record "$recording" "${arguments[0]}" >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of a recording of several scenarios is not 2"
    holds "$work/out.txt" "softcard: --record takes one scenario, and these are"
    "$caller" replay "$work/nowhere.rec" >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of a missing recording is not 2"
    holds "$work/out.txt" "cannot read $work/nowhere.rec: No such file or directory"
    # On the software card, other ids are told once and are no difference.
    (cd "$work" && "$caller" run --quiet --record ids.rec "${arguments[0]}/update-clients.scn") >/dev/null
    sed -i 's/100001/777/g' "$work/ids.rec"
    "$caller" replay --on-card "$work/ids.rec" >"$work/out.txt" 2>&1 || { fail "other ids differ"; cat "$work/out.txt"; }
    holds "$work/out.txt" ": egress 777 of the recording is egress 100001 on the card"
    [ "$(wc -l <"$work/out.txt")" = 2 ] || { fail "ids are told more than once"; cat "$work/out.txt"; }
    "$caller" replay --on-card "$recording" >"$work/out.txt" 2>&1
    [ $? = 1 ] || fail "exit status of a replay on the card that differs is not 1"
    holds "$work/out.txt" "-     IngressManager::CreateIngress(unit=0, vrf=7, flags=0x0) = 0"
    for recording in nowhere.rec out.txt; do
      "$caller" replay --on-card "$work/$recording" >"$work/errors.txt" 2>&1
      [ $? = 2 ] || fail "exit status of $recording on the card is not 2"
    done
    recording=$work/card.rec
    # A recording made a scenario finds what was recorded, and a fault for what was refused.
    for scenario in provider-edge vlan/install-association-positive vlan/install-station-refused update-clients; do
      (cd "$work" && "$caller" run --quiet --record scenario.rec "${arguments[0]}/$scenario.scn") >/dev/null
      "$caller" scenario "$work/scenario.rec" -o "$work/made.scn" || fail "no scenario of $scenario"
      "$caller" run --quiet "$work/made.scn" >"$work/out.txt" 2>&1 || { fail "$scenario differs"; tail "$work/out.txt"; }
    done
    (cd "$work" && "$caller" run --quiet --record scenario.rec "${arguments[0]}/vlan/install-station-refused.scn") >/dev/null
    "$caller" scenario "$work/scenario.rec" >"$work/made.scn"
    holds "$work/made.scn" "fail MyStationManager::InsertMyStationVlanEntry result=-6"
    # Made short, it has what the refusal needs, or a difference, or any one request; and what cannot be is refused.
    "$caller" scenario "$work/scenario.rec" --minimise -o "$work/short.scn" || fail "a refusal is not made short"
    "$caller" run --quiet "$work/short.scn" >"$work/out.txt" 2>&1 || { fail "the short refusal differs"; cat "$work/out.txt"; }
    holds "$work/short.scn" "fail MyStationManager::InsertMyStationVlanEntry result=-6"
    "$caller" scenario "$recording" --minimise -o "$work/short.scn" || fail "a difference is not made short"
    "$caller" run --quiet "$work/short.scn" >"$work/out.txt" 2>&1
    [ $? = 1 ] || fail "exit status of a difference made short is not 1"
    holds "$work/out.txt" "CreateIngress(unit=0, vrf=7, flags=0x0)"
    line=$(grep -n " install-mpls " "$work/ids.rec" | head -n 1 | cut -d: -f1)
    "$caller" scenario "$work/ids.rec" --minimise --line "$line" -o "$work/short.scn" || fail "no scenario of line $line"
    holds "$work/short.scn" "install-mpls "
    "$caller" scenario "$work/ids.rec" --minimise --line 3 >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of a line without a request is not 2"
    holds "$work/out.txt" "has no request in line 3"
    sed -n "1,$((line - 1))p" "$work/ids.rec" >"$work/well.rec"
    "$caller" scenario "$work/well.rec" --minimise >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of a recording without a refusal is not 2"
    holds "$work/out.txt" "has no request that was refused"
    "$caller" scenario "$work/nowhere.rec" >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of a missing recording is not 2"
    "$caller" scenario "${arguments[0]}/packets.scn" >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of what is no recording is not 2"
    holds "$work/out.txt" "line 1: this is no recording"
    "$caller" scenario "$work/scenario.rec" -o "$work/scenario.rec/none" >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status of a scenario that cannot be written is not 2"
    cp "$caller" "$work/softcard"
    LD_LIBRARY_PATH=$(dirname "$recorder"):$(dirname "$caller")/../src:$(dirname "$caller")/../softcard \
      "$work/softcard" replay "$recording" >"$work/out.txt" 2>&1
    [ $? = 2 ] || fail "exit status without the replay's program is not 2"
    holds "$work/out.txt" "softcard-replay: No such file or directory; it has to lie beside this program" ;;
  anywhere)  # a process without module and platform does not notice it; one whose platform lacks functions is told
    record -- "$caller" 2>"$work/errors.txt"
    [ $? = 2 ] || fail "exit status is not the caller's own"
    lacks "$work/errors.txt" hal_card_recorder
    [ ! -e "$recording" ] || fail "there is a recording" ;;
  *) fail "there is no such case" ;;
esac
exit $((failures > 0))
