#!/bin/bash
# Does what the walk-through says, and finds what it shows. What is kept of it in the end is as short as it can be.
# walkthrough.sh RECORDER SOFTCARD PROCESS WORK_DIRECTORY DOCUMENT
set -u
recorder=$1 softcard=$2 process=$3 work=$4 document=$5
rm -rf "$work"
mkdir -p "$work"
cd "$work" || exit 1
failures=0
fail() { echo "$*"; failures=$((failures + 1)); }

ln -s "$process" card-daemon
softcard() { "$softcard" "$@"; }

# Each command stands behind "$ ", its output below it.
awk '$0 == "<!-- walk-through -->" { here = 1 } $0 == "<!-- end of walk-through -->" { here = 0 }
     here && /^```/ { inside = !inside; next } here && inside' "$document" >shown.txt
grep -q '^\$ ' shown.txt || { echo "$document shows no walk-through"; exit 1; }
while IFS= read -r command; do
  printf '$ %s\n' "$command"
  eval "${command//LD_PRELOAD=/LD_PRELOAD=$(dirname "$recorder")/}" </dev/null
done < <(sed -n 's/^\$ //p' shown.txt) >real.txt 2>&1
diff -u shown.txt real.txt || fail "the walk-through differs"

# What is kept passes; without any one of its requests it fails.
kept=tunnel-refused.scn
requests=$(grep -nE '^(init|install|replace|destroy|client)' $kept | cut -d: -f1)
[ "$(wc -w <<<"$requests")" = 4 ] || fail "$kept has other requests: $requests"
for line in $requests; do
  sed "${line}d" $kept >less.scn
  softcard run --quiet less.scn >less.txt 2>&1 && { fail "line $line of $kept is not needed"; cat less.txt; }
done

# A difference is shortened, too: to what fails as the whole does, and at once without any one of its requests.
sed 's/log 7: Tunnel Label 1 is 1009/log 7: Tunnel Label 1 is 77/' card.rec >other.rec
softcard replay --on-card other.rec >whole.txt
[ $? = 1 ] || fail "the edited recording does not differ"
softcard scenario other.rec --minimise -o differs.scn || fail "the edited recording cannot be shortened"
softcard run --quiet differs.scn >differs.txt
[ $? = 1 ] || fail "what is left of a difference does not fail"
grep -A99 'expected, + found' differs.txt >difference.txt
for line in '-   log 7: Tunnel Label 1 is 77' '+   log 7: Tunnel Label 1 is 1009' '1 failed'; do
  grep -qF -- "${line//   / }" differs.txt || { fail "the run does not show: $line"; cat differs.txt; }
done
for line in $(grep -nE '^(init|install|replace|destroy|client)' differs.scn | cut -d: -f1 | head -n -1); do
  sed "${line}d" differs.scn >less.scn
  softcard run --quiet less.scn | grep -A99 'expected, + found' | sed 's/less/differs/' | diff -q - difference.txt >less.txt &&
    fail "line $line of differs.scn is not needed"
done

# Any other request by its line; and what cannot be.
line=$(grep -n ' install-host 21 ' card.rec | cut -d: -f1)
softcard scenario card.rec --minimise --line "$line" -o host.scn && softcard run --quiet host.scn >host.txt ||
  { fail "no scenario of line $line"; cat host.txt; }
grep -q '^install-host 21 ' host.scn || fail "the scenario is not line $line's"
[ "$(grep -cE '^(init|install|replace|destroy|client)' host.scn)" = 3 ] || { fail "a host needs its VRF and its VLAN only"; cat host.scn; }
refuses() {
  local expected=$1
  shift
  softcard scenario "$@" >refused.txt 2>&1
  [ $? = 2 ] || fail "$*: exit status is not 2"
  grep -qF -- "$expected" refused.txt || { fail "$* does not say: $expected"; cat refused.txt; }
}
refuses "card.rec has no request in line 3" card.rec --minimise --line 3
sed -n "1,$((line - 1))p" card.rec >well.rec
refuses "well.rec has no request that was refused" well.rec --minimise
refuses "--line requires --minimise" card.rec --line 3
refuses "is read twice, which a pipe cannot be" <(cat card.rec)
exit $((failures > 0))
