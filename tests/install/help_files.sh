#!/usr/bin/env bash
# The man page and the completions are those that scripts/help_files makes from the program's --help; every command and
# option stands in each of them; and the completion of bash completes.
# usage: help_files.sh PROGRAM PROJECT_FOLDER
set -euo pipefail
program=$1 project=$2
man=$project/docs/tornwalzen.1 bash=$project/app/completion/tornwalzen.bash zsh=$project/app/completion/_tornwalzen
bad=0 seen=0
commands=$("$program" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
for command in $commands; do
  for file in "$man" "$bash" "$zsh"; do
    grep -qiw -- "$command" "$file" || { echo "${file##*/} does not name the command $command"; bad=1; }
  done
  inMan=$(awk -v part="TORNWALZEN ${command^^}" '/^.SH/ {inside = substr($0, 5) == part} inside && /^.fB/' "$man" |
    sed 's/\\-/-/g; s/\\f./ /g')
  # from the head of each option's line alone: examples name options too
  for option in $("$program" "$command" --help | sed -n '/^Examples:/q;s/^  \(-[^ ]*\).*/\1/p' | tr ',' '\n' | sed 's/{.*//'); do
    seen=$((seen + 1))
    grep -qw -- "$option" <<<"$inMan" || { echo "the man page has no $command $option"; bad=1; }
    grep -q -- "^  $command) options=\"\(.* \)\?$option[ \"]" "$bash" || { echo "bash does not complete $command $option"; bad=1; }
    grep -q -- "'\*$option\[" "$zsh" || { echo "zsh does not complete $command $option"; bad=1; }
  done
done
[ "$seen" -gt 60 ] || { echo "only $seen options found: the help is read wrongly"; bad=1; }

source "$bash"
complete_() { COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); _tornwalzen 2>/dev/null; echo "${COMPREPLY[*]}"; }
expect() { [ "$1" = "$2" ] || { echo "bash completes '$1', not '$2'"; bad=1; }; }
expect "$(complete_ tornwalzen ch)" 'check'
expect "$(complete_ tornwalzen solve --path s)" 'sure'
expect "$(complete_ tornwalzen study --sl)" '--slurm'
expect "$(complete_ tornwalzen solve --thick)" '--thickness'
expect "$(cd "$project" && complete_ tornwalzen solve READ)" 'README.md'
! command -v zsh >/dev/null || zsh -n "$zsh" || { echo 'zsh cannot read its completion'; bad=1; }

if [ -x /usr/bin/python3 ]; then
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  /usr/bin/python3 "$project/scripts/help_files" "$program" "$scratch"
  for file in docs/tornwalzen.1 app/completion/tornwalzen.bash app/completion/_tornwalzen; do
    cmp -s "$scratch/$file" "$project/$file" || { echo "$file is not of this program: run scripts/help_files PROGRAM"; bad=1; }
  done
fi
[ $bad -eq 0 ] && echo "$seen options stand in the man page and in both completions"
exit $bad
