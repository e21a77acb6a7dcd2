#!/usr/bin/env bash
# Who may include whom. The run flows downwards: entry points, driver, then development, elements and solver,
# which never include one another; all may stand on the ground of src/interface/.
# usage: include_rules.sh PROJECT_FOLDER | include_rules.sh --self-test
set -euo pipefail

# Prints every #include "..." or <...> below the folders given, as "file header".
includes() {
  find "$@" -name '*.[ch]pp' -o -name '*.h' 2>/dev/null | LC_ALL=C sort | while read -r file; do
    sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*\([<"][^>"]*\)[>"].*/\1/p' "$file" |
      while read -r header; do echo "$file $header"; done
  done
}

# The pattern of quoted headers that a file may include.
allowed() {
  local ground='interface/(array_view|driver_arrays|fixed_fields|material_setup|messages|progress|run_options|run_record|run_state|subscript_check)\.hpp|tornwalzen(_[a-z]+)?\.h'
  case $1 in
    src/interface/osinit.cpp|src/interface/osmain.cpp|src/interface/extension_results.cpp) echo "$ground|interface/.*|driver/.*|sparse/loe(ini|sys)\.hpp" ;;
    src/interface/*) echo "interface/.*|tornwalzen(_[a-z]+)?\.h" ;;
    src/driver/*)    echo "$ground|driver/.*|develop/.*|element/.*|sparse/.*" ;;
    src/develop/*)   echo "$ground|develop/.*" ;;
    src/element/*)   echo "$ground|element/.*" ;;
    src/sparse/*)    echo "$ground|sparse/.*" ;;
    src/deckio/*)    echo "$ground|deckio/.*" ;;
    app/*)           echo "tornwalzen(_[a-z]+)?\.h|[a-z_0-9]+\.hpp" ;;
    samples/*)       echo "[a-z_0-9]+\.hpp" ;;
    include/*)       echo "tornwalzen(_[a-z]+)?\.h" ;;
  esac
}

# Names each violation of the tree in the current folder and returns 1 if there is one.
check() {
  local bad=0 seen=0 file header
  while read -r file header; do
    seen=$((seen + 1))
    case $header in
      \"*)
        if ! [[ ${header#\"} =~ ^($(allowed "$file"))$ ]]; then
          echo "$file must not include ${header#\"}"; bad=1
        fi ;;
      \<*)
        # The library stands on the C++ standard library alone: plain header names, <stdint.h> and <stddef.h> in the
        # C interface, the processors' own vector headers in kernels.
        case $file in src/*|include/*)
          if ! [[ ${header#<} =~ ^([a-z_0-9]+|stdint\.h|stddef\.h|immintrin\.h|arm_neon\.h)$ ]]; then
            echo "$file must not include <${header#<}>: not of the standard library"; bad=1
          fi ;;
        esac ;;
    esac
  done < <(includes src include app samples)
  [ "$seen" -gt 0 ] || { echo 'no include found: wrong folder?'; return 1; }
  [ $bad -eq 0 ] && echo "$seen includes follow the rules"
  return $bad
}

# A tree of one file must be refused, or accepted, as told.
selfTest() {
  local verdict
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  while read -r wanted file header; do
    rm -rf "${scratch:?}/tree"
    mkdir -p "$scratch/tree/$(dirname "$file")"
    echo "  #  include $header  // why" >"$scratch/tree/$file"
    verdict=allowed
    (cd "$scratch/tree" && check >/dev/null) || verdict=refused
    if [ "$verdict" != "$wanted" ]; then
      echo "$file with $header: $verdict, should be $wanted"; exit 1
    fi
  done <<'CASES'
refused src/element/a.cpp "sparse/loesys.hpp"
refused src/sparse/a.cpp "element/element.hpp"
refused src/develop/a.hpp "driver/inverse_driver.hpp"
refused src/driver/a.cpp "interface/osmain.hpp"
refused src/interface/messages.cpp "driver/inverse_driver.hpp"
refused src/interface/osmain.cpp "element/element.hpp"
refused src/interface/osinit.cpp "sparse/ordering.hpp"
refused src/element/a.cpp <Eigen/Dense>
refused include/tornwalzen.h <vector.hpp>
refused app/a.cpp "interface/run_state.hpp"
refused samples/a.cpp "tornwalzen.h"
allowed src/driver/a.cpp "element/element.hpp"
allowed src/interface/osmain.cpp "driver/inverse_driver.hpp"
allowed src/interface/osinit.cpp "sparse/loeini.hpp"
allowed src/sparse/a.cpp "interface/run_state.hpp"
allowed src/sparse/a.cpp <cstdint>
allowed app/a.cpp "tornwalzen.h"
allowed app/a.cpp <CLI/CLI.hpp>
CASES
  echo 'the rules refuse and accept as they should'
}

if [ "$1" = --self-test ]; then selfTest; else cd "$1" && check; fi
