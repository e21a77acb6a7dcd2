#!/usr/bin/env bash
# Who may include whom. The run flows downwards: entry points, driver, then development, elements and solver,
# which never include one another; elements stand on the material, all on the ground.
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
  local api='tornwalzen(_[a-z]+)?\.h'
  local ground="ground/.*|$api"
  case $1 in
    src/ground/*)    echo "ground/.*|$api" ;;
    src/material/*)  echo "$ground|material/.*" ;;
    src/element/*)   echo "$ground|material/.*|element/.*" ;;
    src/sparse/*)    echo "$ground|sparse/.*" ;;
    src/develop/*)   echo "$ground|develop/.*" ;;
    src/driver/*)    echo "$ground|driver/.*|develop/.*|element/.*|material/.*|sparse/.*" ;;
    src/interface/*) echo "$ground|interface/[a-z_]+\.hpp|driver/[a-z_]+\.hpp|material/[a-z_]+\.hpp|element/element_strains\.hpp|sparse/(pattern|phases)\.hpp" ;;
    src/deckio/*)    echo "$ground|deckio/.*" ;;
    app/main.cpp|app/command/*) echo "$api|(command|run|mesh|result|system)/.*" ;;
    app/run/*)       echo "$api|(run|mesh|system)/.*" ;;
    app/result/*)    echo "$api|(run|result|mesh|system)/.*" ;;
    app/mesh/*)      echo "$api|(mesh|system)/.*" ;;
    app/system/*)    echo "system/.*" ;;
    samples/*)       echo "[a-z_0-9]+\.hpp" ;;
    include/*)       echo "$api" ;;
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
refused src/element/a.cpp "sparse/phases.hpp"
refused src/sparse/a.cpp "element/element.hpp"
refused src/develop/a.hpp "driver/inverse_driver.hpp"
refused src/driver/a.cpp "interface/osmain.hpp"
refused src/ground/messages.cpp "driver/inverse_driver.hpp"
refused src/ground/a.hpp "material/flow_curve.hpp"
refused src/material/a.hpp "element/density.hpp"
refused src/interface/osmain.cpp "element/element.hpp"
refused src/interface/osinit.cpp "sparse/ordering.hpp"
refused src/element/a.cpp <Eigen/Dense>
refused include/tornwalzen.h <vector.hpp>
refused app/run/a.cpp "ground/run_state.hpp"
refused app/run/a.cpp "command/arguments.hpp"
refused app/result/a.cpp "command/arguments.hpp"
refused app/mesh/a.cpp "run/hold.hpp"
refused app/mesh/a.cpp "result/results.hpp"
refused app/system/a.cpp "mesh/mesh.hpp"
refused samples/a.cpp "tornwalzen.h"
allowed src/driver/a.cpp "element/element.hpp"
allowed src/element/a.cpp "material/flow_curve.hpp"
allowed src/interface/osmain.cpp "driver/inverse_driver.hpp"
allowed src/interface/osinit.cpp "sparse/pattern.hpp"
allowed src/sparse/a.cpp "ground/run_state.hpp"
allowed src/sparse/a.cpp <cstdint>
allowed app/run/a.cpp "tornwalzen.h"
allowed app/command/a.cpp <CLI/CLI.hpp>
CASES
  echo 'the rules refuse and accept as they should'
}

if [ "$1" = --self-test ]; then selfTest; else cd "$1" && check; fi
