#!/usr/bin/env bash
# The man page and the completion of zsh are those that scripts/help_files makes from the program's --help, and every
# command and option stands in both.
# usage: help_files.sh PROGRAM PROJECT_FOLDER
set -euo pipefail
program=$1 project=$2
man=$project/docs/tornwalzen.1 zsh=$project/packaging/_tornwalzen
bad=0 seen=0
commands=$("$program" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
for command in $commands; do
  for file in "$man" "$zsh"; do
    grep -qiw -- "$command" "$file" || { echo "${file##*/} does not name the command $command"; bad=1; }
  done
  inMan=$(awk -v part="TORNWALZEN ${command^^}" '/^.SH/ {inside = substr($0, 5) == part} inside && /^.fB/' "$man" |
    sed 's/\\-/-/g; s/\\f./ /g')
  # from the head of each option's line alone: examples name options too
  for option in $("$program" "$command" --help | sed -n '/^Examples:/q;s/^  \(-[^ ]*\).*/\1/p' | tr ',' '\n' | sed 's/{.*//'); do
    seen=$((seen + 1))
    grep -qw -- "$option" <<<"$inMan" || { echo "the man page has no $command $option"; bad=1; }
    grep -q -- "'\*$option\[" "$zsh" || { echo "zsh does not complete $command $option"; bad=1; }
  done
done
[ "$seen" -gt 60 ] || { echo "only $seen options found: the help is read wrongly"; bad=1; }

! command -v zsh >/dev/null || zsh -n "$zsh" || { echo 'zsh cannot read its completion'; bad=1; }

if [ -x /usr/bin/python3 ]; then
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  /usr/bin/python3 "$project/scripts/help_files" "$program" "$scratch"
  for file in docs/tornwalzen.1 packaging/_tornwalzen; do
    cmp -s "$scratch/$file" "$project/$file" || { echo "$file is not of this program: run scripts/help_files PROGRAM"; bad=1; }
  done
fi
[ $bad -eq 0 ] && echo "$seen options stand in the man page and in the completion of zsh"
exit $bad
