#!/usr/bin/env bash
# The shared library exports its nine functions and nothing else, under a versioned soname.
# usage: exported_symbols.sh LIBRARY MAJOR
set -euo pipefail
library=$1 major=$2

wanted='OSINIT OSMAIN PlivaneSetProgressHdlr inipgr procpu progre proinf prterr prttxt'
# Of a symbol "name@@VERSION" the name counts; absolute symbols (A) are version names.
found=$(nm -D --defined-only "$library" | awk '$2 != "A" {sub(/@.*/, "", $3); print $3}' | LC_ALL=C sort | xargs)
if [ "$found" != "$wanted" ]; then
  printf 'exported: %s\nwanted:   %s\n' "$found" "$wanted"
  exit 1
fi

soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
if [ "$soname" != "libtornwalzen.so.$major" ]; then
  echo "soname: '$soname', wanted 'libtornwalzen.so.$major'"
  exit 1
fi
echo "exports: $found; soname $soname"
