#!/usr/bin/env bash
# Runs every command of docs/index.md as it stands: the blocks marked sh and python of each section in their order, in a
# folder of its own that looks like the project's, with what the section Install lays down and sets.
# usage: guide.sh PROJECT_FOLDER BUILD_FOLDER [SANITIZERS] | guide.sh --self-test
set -euo pipefail

# The blocks of a page, each line as "SECTION<tab>LANGUAGE<tab>text"; nothing else of it.
blocks() {
  awk '
    /^## / { section = substr($0, 4) }
    /^```/ { language = inside ? "" : substr($0, 4); inside = !inside; if (inside) print section "\t" language "\tBEGIN"; next }
    inside { print section "\t" language "\t" $0 }' "$1"
}

# The lines of a section as one script of bash.
script() {
  blocks "$1" | awk -F '\t' -v wanted="$2" '
    $1 != wanted { next }
    { text = $0; sub(/^[^\t]*\t[^\t]*\t/, "", text) }
    text == "BEGIN" { if (open) print "THE_PYTHON_BLOCK"; open = $2 == "python"; if (open) print "python3 <<'"'THE_PYTHON_BLOCK'"'"; next }
    $2 == "python" || $2 == "sh" { print text }
    END { if (open) print "THE_PYTHON_BLOCK" }'
}

selfTest() {
  page=$(mktemp)
  trap 'rm -f "$page"' EXIT
  printf '%s\n' '## One' '```sh' 'echo a' '```' 'no' '```python' 'print("b")' '```' '```sh' 'echo c' '```' '## Two' \
    '```sh' 'false' 'echo d' '```' '```c' 'int x;' '```' >"$page"
  [ "$(bash -e <(script "$page" One))" = $'a\nb\nc' ] || { echo 'a section is not run as it stands'; exit 1; }
  if bash -e <(script "$page" Two) >/dev/null; then echo 'a command that fails is not seen'; exit 1; fi
  echo 'sections are run as they stand, and what fails is seen'
}
if [ "$1" = --self-test ]; then selfTest; exit; fi

project=$1 build=$2 sanitizers=${3:-}
page=$project/docs/index.md
[ -z "$sanitizers" ] || { echo 'skipped: a sanitized library does not load into a C host or Python without the sanitizer'; exit 77; }
scratch=$(mktemp -d)
export HOME=$scratch/home
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$HOME" "$scratch/bin" "$scratch/tree/build"
ln -s /usr/bin/python3 "$scratch/bin/python3"   # Debian's own, which has the packages
export PATH=$scratch/bin:$PATH OMP_NUM_THREADS=1 PYTHONDONTWRITEBYTECODE=1
ln -s "$build" "$scratch/tree/build/release"
for name in samples tests python; do ln -s "$project/$name" "$scratch/tree/$name"; done
cd "$scratch/tree"

# What a section needs beside the project, as a word: the Python module to import.
needs() {
  case $1 in
    'From CAD') echo gmsh ;;
    'In Python') echo numpy matplotlib ;;
    'On a cluster') echo numpy matplotlib distributed ;;
  esac
}

# The part of the section From CAD: an angle of 2 mm sheet with an inner radius of 3 mm.
bracket() {
  PYTHONPATH=$project/tests/app/import python3 -c 'import parts
parts.strip("bracket.step", [50, 30], [90], 3, 2, 40)' >/dev/null
}

skipped=()
while read -r section; do
  missing=
  for module in $(needs "$section"); do python3 -c "import $module" 2>/dev/null || missing+=" $module"; done
  if [ -n "$missing" ]; then skipped+=("$section: no$missing"); continue; fi
  [ "$section" != 'From CAD' ] || bracket
  { script "$page" Install; [ "$section" = Install ] || script "$page" "$section"; } >"$scratch/section.sh"
  if ! timeout 300 bash -e -o pipefail "$scratch/section.sh" >"$scratch/log" 2>&1; then
    echo "$section fails:"; cat "$scratch/log"; exit 1
  fi
  echo "$section: $(script "$page" "$section" | wc -l) lines run"
done < <(blocks "$page" | cut -f 1 | uniq)
for sentence in ${skipped[@]+"${skipped[@]}"}; do echo "skipped $sentence"; done
