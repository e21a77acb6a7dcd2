#!/usr/bin/env bash
# What bash offers behind a beginning of a command line of tornwalzen, compared with its help.
# usage: completion.sh COMPLETION_FILE PROGRAM
set -euo pipefail
source "$1"
program=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
touch 'part.obj' 'other part.stl'

offers() {   # WORDS... -- what the last of them, perhaps begun, may become
  COMP_WORDS=("$program" "$@") COMP_CWORD=$#
  _tornwalzen
  printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd ,
}
expect() {
  local wanted=$1 got
  shift
  got=$(offers "$@")
  [ "$got" = "$wanted" ] || { echo "tornwalzen $*: offers \"$got\", wanted \"$wanted\""; exit 1; }
}

expect '--help,--version,check,collect,deck,materials,solve,study' ''
expect 'solve' so
expect '--thickness' solve --thick
expect 'fixed,sure' solve part.obj --path ''
expect 'press' solve part.obj --model pr
expect 'other part.stl,part.obj' solve ''
expect 'part.obj' solve pa
expect 'part.obj' solve --curve pa
expect '' solve --no-such-option
for command in solve check deck materials study collect; do
  for option in $("$program" $command --help | grep -o -e '^  --[a-z-]*'); do   # every one of the help's is offered
    [[ ,$(offers $command --), == *,$option,* ]] || { echo "$command $option is not offered"; exit 1; }
  done
done
echo 'bash completes commands, options, choices and files'
