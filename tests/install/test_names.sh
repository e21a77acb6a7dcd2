#!/usr/bin/env bash
# Tests are found by their names and places: a file with tests ends in _test.cpp, is built, and lies in a folder that
# mirrors src/ or app/ or is one of the few beside them.
# usage: test_names.sh PROJECT_FOLDER | test_names.sh --self-test
set -euo pipefail

beside='bench|errors|fuzz|golden|install|samples|verification|app/program'

# The CMakeLists.txt that builds the files of a folder.
listOf() {
  local folder=$1
  while [ ! -e "$folder/CMakeLists.txt" ] && [ "$folder" != . ]; do folder=$(dirname "$folder"); done
  echo "$folder/CMakeLists.txt"
}

# Names each violation in the current folder and returns 1 if there is one.
check() {
  local bad=0 seen=0 file folder
  while read -r file; do
    seen=$((seen + 1))
    folder=$(dirname "${file#tests/}")
    [[ $file = *_test.cpp ]] || { echo "$file has tests and does not end in _test.cpp"; bad=1; }
    grep -q "\b$(basename "$file")\b" "$(listOf "$(dirname "$file")")" || { echo "$file is not built"; bad=1; }
    [ -d "src/$folder" ] || { [[ $folder = app/* ]] && [ -d "$folder" ]; } || [[ $folder =~ ^($beside)$ ]] ||
      { echo "$file mirrors no folder of src/ or app/"; bad=1; }
  done < <(find tests -name '*.cpp' -exec grep -lE '^(TEST|TEST_F|TEST_P|TYPED_TEST|HOSTILE_CASE)\(' {} + | LC_ALL=C sort)
  [ "$seen" -gt 0 ] || { echo 'no test found: wrong folder?'; return 1; }
  [ $bad -eq 0 ] && echo "$seen files with tests are named, placed and built"
  return $bad
}

# A tree with one test, built by the list that is given, must be refused or accepted as told.
selfTest() {
  local verdict wanted file listed
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  while read -r wanted file listed; do
    rm -rf "${scratch:?}/tree"
    mkdir -p "$scratch/tree/$(dirname "$file")" "$scratch/tree/src/sparse" "$scratch/tree/app/run"
    echo 'TEST(A, B) {}' >"$scratch/tree/$file"
    echo "test($listed)" >"$scratch/tree/tests/CMakeLists.txt"
    verdict=allowed
    (cd "$scratch/tree" && check >/dev/null) || verdict=refused
    [ "$verdict" = "$wanted" ] || { echo "$file, built: $listed: $verdict, should be $wanted"; exit 1; }
  done <<'CASES'
allowed tests/sparse/a_test.cpp a_test.cpp
allowed tests/app/run/a_test.cpp run/a_test.cpp
allowed tests/golden/a_test.cpp a_test.cpp
refused tests/sparse/a.cpp a.cpp
refused tests/sparse/a_test.cpp b_test.cpp
refused tests/sparse/a_test.cpp aa_test.cpp
refused tests/solver/a_test.cpp a_test.cpp
refused tests/app/cli/a_test.cpp a_test.cpp
CASES
  echo 'names and places are refused and accepted as they should'
}

if [ "$1" = --self-test ]; then selfTest; else cd "$1" && check; fi
