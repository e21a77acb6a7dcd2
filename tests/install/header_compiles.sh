#!/usr/bin/env bash
# The public headers compile on their own, without a warning, as C99, C11 and C++.
# usage: header_compiles.sh C_COMPILER CXX_COMPILER INCLUDE_FOLDER
set -euo pipefail
c=$1 cxx=$2 folder=$3
for header in "$folder"/*.h; do
  for standard in c99 c11; do
    "$c" -std=$standard -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c "$header"
  done
  "$cxx" -std=c++11 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ "$header"
  echo "$(basename "$header"): C99, C11, C++11"
done
