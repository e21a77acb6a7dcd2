#!/usr/bin/env bash
# Who may include whom. The run flows downwards: entry points, driver, then development, elements and solver,
# which never include one another; elements stand on the material, all on the ground. In the host program: commands, a
# run, then meshes and results, which never see one another, then the system. The law holds on the closure, too: no
# file gets at a room through another room's header.
# usage: include_rules.sh PROJECT_FOLDER | include_rules.sh --self-test
set -euo pipefail

# Prints every #include "..." or <...> below the folders given, as "file header", and every file once alone.
includes() {
  find "$@" -name '*.[ch]pp' -o -name '*.h' 2>/dev/null | LC_ALL=C sort | while read -r file; do
    echo "$file"
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
    src/forces/*)    echo "$ground|material/.*|forces/.*" ;;
    src/sparse/*)    echo "$ground|sparse/.*" ;;
    src/develop/*)   echo "$ground|develop/.*" ;;
    src/driver/*)    echo "$ground|driver/.*|develop/.*|element/.*|forces/.*|material/.*|sparse/.*" ;;
    src/interface/*) echo "$ground|interface/[a-z_]+\.hpp|driver/[a-z_]+\.hpp|material/[a-z_]+\.hpp|element/element_strains\.hpp|sparse/(pattern|phases)\.hpp" ;;
    src/deckio/*)    echo "$ground|deckio/.*" ;;
    app/main.cpp)    echo "(command|system)/.*" ;;
    app/command/*)   echo "$api|(command|run|mesh|result|system)/.*" ;;
    app/run/*)       echo "$api|(run|mesh|system)/.*|result/run_data\.hpp" ;;
    app/result/*)    echo "$api|(result|system)/.*" ;;
    app/mesh/*)      echo "$api|(mesh|system)/.*" ;;
    app/system/*)    echo "system/.*" ;;
    samples/*)       echo "[a-z_0-9]+\.hpp" ;;
    include/*)       echo "$api" ;;
  esac
}

# The pattern of what a file may reach on any way. A room's own headers may stand on one another, so that here whole
# rooms count.
reachable() {
  case $1 in
    src/interface/*) echo "(ground|interface|driver|material|element|sparse)/.*|$(allowed include/any)" ;;
    app/main.cpp)    allowed app/command/any ;;
    *)               allowed "$1" ;;
  esac
}

# Of what `includes` prints: every header of the tree that a file reaches, as "file header first", where first is the
# header in the file with which the way begins.
closure() {
  awk '
    { known[$1] = 1 }
    $2 ~ /^"/ { ++lines; file[lines] = $1; header[lines] = substr($2, 2) }
    END {
      for (k = 1; k <= lines; ++k) {
        folder = file[k]; sub(/[^\/]*$/, "", folder)
        split("src/ app/ include/ " folder, places, " ")
        for (i = 1; i <= 4; ++i)
          if ((places[i] header[k]) in known) { to[file[k], ++count[file[k]]] = places[i] header[k]; break }
      }
      for (f in known) {
        split("", first); tail = 0
        for (i = 1; i <= count[f]; ++i) { h = to[f, i]; if (!(h in first)) { first[h] = h; queue[++tail] = h } }
        for (head = 1; head <= tail; ++head)
          for (i = 1; i <= count[queue[head]]; ++i) {
            h = to[queue[head], i]
            if (!(h in first)) { first[h] = first[queue[head]]; queue[++tail] = h }
          }
        for (head = 1; head <= tail; ++head) if (queue[head] != f) print f, queue[head], first[queue[head]]
      }
    }'
}

# Names each violation of the tree in the current folder and returns 1 if there is one.
check() {
  local bad=0 seen=0 lines file header first
  lines=$(includes src include app samples)
  while read -r file header; do
    case $header in
      \"*)
        seen=$((seen + 1))
        if ! [[ ${header#\"} =~ ^($(allowed "$file"))$ ]]; then
          echo "$file must not include ${header#\"}"; bad=1
        fi ;;
      \<*)
        seen=$((seen + 1))
        # The library stands on the C++ standard library alone: plain header names, <stdint.h> and <stddef.h> in the
        # C interface, the processors' own vector headers in kernels; the thread pool asks for the number of its
        # process, since a forked one has none of its threads.
        case $file in src/*|include/*)
          if [ "$file $header" = 'src/ground/thread_pool.cpp <unistd.h' ]; then continue; fi
          if ! [[ ${header#<} =~ ^([a-z_0-9]+|stdint\.h|stddef\.h|immintrin\.h|arm_neon\.h)$ ]]; then
            echo "$file must not include <${header#<}>: not of the standard library"; bad=1
          fi ;;
        esac ;;
    esac
  done <<<"$lines"
  while read -r file header first; do
    [ -n "$file" ] || continue
    header=${header#src/} header=${header#app/} header=${header#include/} header=${header#samples/}
    if ! [[ $header =~ ^($(reachable "$file"))$ ]]; then
      echo "$file must not reach $header, as it does through ${first#*/}"; bad=1
    fi
  done < <(closure <<<"$lines" | LC_ALL=C sort)
  [ "$seen" -gt 0 ] || { echo 'no include found: wrong folder?'; return 1; }
  [ $bad -eq 0 ] && echo "$seen includes follow the rules, and so does what they lead to"
  return $bad
}

# A tree must be refused, or accepted, as told: each row names files, each with what it includes; - is nothing.
selfTest() {
  local wanted row verdict
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  while read -r wanted row; do
    rm -rf "${scratch:?}/tree"
    read -r -a row <<<"$row"
    for ((k = 0; k < ${#row[@]}; k += 2)); do
      mkdir -p "$scratch/tree/$(dirname "${row[k]}")"
      : >"$scratch/tree/${row[k]}"
      [ "${row[k + 1]}" = - ] || echo "  #  include ${row[k + 1]}  // why" >"$scratch/tree/${row[k]}"
    done
    verdict=allowed
    (cd "$scratch/tree" && check >/dev/null) || verdict=refused
    if [ "$verdict" != "$wanted" ]; then
      echo "${row[*]}: $verdict, should be $wanted"; exit 1
    fi
  done <<'CASES'
refused src/element/a.cpp "sparse/phases.hpp"
refused src/sparse/a.cpp "element/element.hpp"
refused src/develop/a.hpp "driver/inverse_driver.hpp"
refused src/forces/a.cpp "element/element.hpp"
refused src/element/a.cpp "forces/free_edges.hpp"
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
refused app/result/a.cpp "mesh/mesh_check.hpp"
refused app/result/a.cpp "run/hold.hpp"
refused app/run/a.cpp "result/vtu_writer.hpp"
refused app/main.cpp "run/library_run.hpp"
refused app/mesh/a.cpp "run/hold.hpp"
refused app/mesh/a.cpp "result/results.hpp"
refused app/system/a.cpp "mesh/mesh.hpp"
refused samples/a.cpp "tornwalzen.h"
allowed src/driver/a.cpp "element/element.hpp"
allowed src/element/a.cpp "material/flow_curve.hpp"
allowed src/forces/a.cpp "material/flow_curve.hpp"
allowed src/driver/a.cpp "forces/free_edges.hpp"
allowed src/interface/osmain.cpp "driver/inverse_driver.hpp"
allowed src/interface/osinit.cpp "sparse/pattern.hpp"
allowed src/sparse/a.cpp "ground/run_state.hpp"
allowed src/sparse/a.cpp <cstdint>
allowed app/run/a.cpp "tornwalzen.h"
allowed app/run/a.cpp "result/run_data.hpp"
allowed app/command/a.cpp <CLI/CLI.hpp>
refused src/interface/a.cpp "driver/b.hpp" src/driver/b.hpp "develop/c.hpp" src/develop/c.hpp -
allowed src/interface/a.cpp "driver/b.hpp" src/driver/b.hpp "sparse/c.hpp" src/sparse/c.hpp -
allowed src/driver/a.cpp "develop/b.hpp" src/develop/b.hpp "develop/c.hpp" src/develop/c.hpp "ground/d.hpp" src/ground/d.hpp -
refused app/run/a.cpp "result/run_data.hpp" app/result/run_data.hpp "result/b.hpp" app/result/b.hpp -
allowed app/result/a.cpp "result/b.hpp" app/result/b.hpp "result/a.hpp" app/result/a.hpp "result/b.hpp"
allowed app/main.cpp "command/b.hpp" app/command/b.hpp "run/c.hpp" app/run/c.hpp "mesh/d.hpp" app/mesh/d.hpp -
CASES
  echo 'the rules refuse and accept as they should'
}

if [ "$1" = --self-test ]; then selfTest; else cd "$1" && check; fi
