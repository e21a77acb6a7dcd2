#!/usr/bin/env bash
# Every page of docs/ stands in the README's list "More", and every relative link of the pages leads to a file.
# usage: pages.sh PROJECT_FOLDER
set -euo pipefail
cd "$1"
bad=0
more=$(sed -n '/^## More$/,$p' README.md)
for page in docs/*.md; do
  grep -qF "]($page)" <<<"$more" || { echo "README.md: \"More\" does not name $page"; bad=1; }
done
for page in *.md docs/*.md; do
  while read -r link; do
    target=${link%%#*}
    [ -z "$target" ] || [ -e "$(dirname "$page")/$target" ] || { echo "$page: no $link"; bad=1; }
  done < <(grep -o '](\([^) ]*\))' "$page" | sed 's/^](\(.*\))$/\1/' | grep -v '^[a-z]*:' || true)
done
[ $bad -eq 0 ] && echo 'every page is listed, every link leads to a file'
exit $bad
