#!/usr/bin/env bash
# The page's npm packages, as its lock file has them, into FOLDER beside a copy of the sources. 77: not to be had here.
# usage: packages.sh PROJECT_FOLDER FOLDER
set -euo pipefail
command -v npm >/dev/null || { echo 'skipped: npm is not here; scripts/setup report installs it'; exit 77; }
sources=$1/app/report folder=$2
mkdir -p "$folder"
for name in package.json package-lock.json build.mjs src; do rm -rf "${folder:?}/$name"; cp -r "$sources/$name" "$folder"; done
cmp -s "$folder/package-lock.json" "$folder/node_modules/.taken" && exit 0
if ! (cd "$folder" && npm ci --no-audit --no-fund >npm.log 2>&1); then
  tail -n 5 "$folder/npm.log"
  echo 'skipped: npm could not get the packages'
  exit 77
fi
cp "$folder/package-lock.json" "$folder/node_modules/.taken"
