# Completion of tornwalzen for bash. What there is to complete comes from the program's own help, so that it is never behind
# it: commands, options, and the words that an option takes where there is a choice of them.

# The help's line of an option, e.g. "  --path TEXT:{sure,fixed}=sure ..."
_tornwalzen_choices() {
  "$1" "$2" --help 2>/dev/null | sed -n "s/^  *$3 [A-Z]*:{\([^}]*\)}.*/\1/p; s/^  *$3 \([a-z|0-9,]*|[a-zA-Z|0-9,]*\).*/\1/p" |
    tr ',|' '\n\n' | grep -v '[A-Z]' | sort -u
}

_tornwalzen() {
  local program=${COMP_WORDS[0]} current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words
  if [ "$COMP_CWORD" -eq 1 ]; then
    words="$("$program" --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p') --help --version"
  elif [[ $current == -* ]]; then
    words=$("$program" "${COMP_WORDS[1]}" --help 2>/dev/null | grep -o -e '^  -[^ ]*' | grep -o -e '--[a-z-]*')
  elif [[ $previous == --* ]]; then
    words=$(_tornwalzen_choices "$program" "${COMP_WORDS[1]}" "$previous")
  fi
  COMPREPLY=()
  while read -r word; do [ -z "$word" ] || COMPREPLY+=("$word"); done < <(compgen -W "${words:-}" -- "$current")
  [ ${#COMPREPLY[@]} -gt 0 ] || [[ $current == -* ]] || { compopt -o filenames 2>/dev/null || true
    while read -r word; do COMPREPLY+=("$word"); done < <(compgen -f -- "$current"); }
}
complete -F _tornwalzen tornwalzen
