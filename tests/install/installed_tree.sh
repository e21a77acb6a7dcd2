#!/usr/bin/env bash
# Installs the build to a temporary prefix, moves that tree elsewhere, and builds and runs the C hosts against it,
# that of the fixed interface and that of the handle: through find_package and through pkg-config.
# usage: installed_tree.sh CMAKE BUILD_FOLDER C_COMPILER C_HOST_FOLDER [SANITIZERS]
set -euo pipefail
shopt -s inherit_errexit   # a host that fails in $(...) is a failure
cmake=$1 build=$2 cc=$3 source=$4 sanitizers=${5:-}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$cmake" --install "$build" --prefix "$scratch/first" >"$scratch/install.log"
prefix="$scratch/moved tree"     # an installed tree works where it is put, blanks in the path included
mv "$scratch/first" "$prefix"

flags=${sanitizers:+-fsanitize=$sanitizers}
echo '--- find_package'
"$cmake" -S "$source/host_project" -B "$scratch/by-cmake" -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$flags" \
  -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/configure.log"
"$cmake" --build "$scratch/by-cmake" >"$scratch/build.log" || { cat "$scratch/build.log"; exit 1; }
byCmake=$(for host in c_host handle_host; do "$scratch/by-cmake/$host" | tail -n 1; done)
echo "$byCmake"

echo '--- pkg-config'
pc=$(find "$prefix" -name tornwalzen.pc)
libdir=$(dirname "$(dirname "$pc")")
export PKG_CONFIG_PATH=$(dirname "$pc")
eval "options=($(pkg-config --cflags --libs tornwalzen))"
byPkgConfig=$(for host in c_host handle_host; do
  "$cc" -std=c11 -Wall -Wextra -Wpedantic -Werror $flags -o "$scratch/$host" "$source/$host.c" "${options[@]}" -lm
  LD_LIBRARY_PATH=$libdir "$scratch/$host" | tail -n 1
done)
echo "$byPkgConfig"

[ "$byCmake" = "$byPkgConfig" ] || { echo 'the two hosts differ'; exit 1; }
[ -e "$prefix/share/doc/tornwalzen/LICENSE" ] && [ -e "$prefix/share/doc/tornwalzen/licences.md" ]
[ ! -e "$prefix/bin/tornwalzen" ] || [ -x "$prefix/bin/tornwalzen-import" ] || { echo 'the import helper is not beside the program'; exit 1; }
if [ -e "$prefix/bin/tornwalzen" ]; then
  for file in man/man1/tornwalzen.1 bash-completion/completions/tornwalzen zsh/site-functions/_tornwalzen; do
    [ -s "$prefix/share/$file" ] || { echo "share/$file is not installed"; exit 1; }
  done
fi
[ -e "$libdir/libtornwalzen.so" ] && [ -e "$prefix/include/tornwalzen.h" ]
