#!/usr/bin/env bash
# app/report/dist/report.html is what its sources make, small enough, and the lock file names no host.
# usage: bundle.sh PROJECT_FOLDER FOLDER_OF_PACKAGES
set -euo pipefail
[ -e "$2/node_modules/.taken" ] || { echo 'skipped: the npm packages are not here'; exit 77; }
(cd "$2" && node build.mjs made.html)
cmp "$2/made.html" "$1/app/report/dist/report.html" ||
  { echo 'dist/report.html is not what its sources make: npm ci && npm run build in app/report'; exit 1; }
[ "$(stat -c %s "$2/made.html")" -lt 1500000 ] || { echo 'the page has 1.5 MB or more without a part'; exit 1; }
! grep -n '"resolved"\|https\?://' "$1/app/report/package-lock.json" || { echo 'the lock file names a host'; exit 1; }
echo "dist/report.html: $(stat -c %s "$2/made.html") bytes, as its sources make it"
