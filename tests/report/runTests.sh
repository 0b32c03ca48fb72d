#!/bin/sh
# runTests.sh FOLDER runs the tests of the page in a folder of report/test. Exit status 77, with the
# reason, where something that they need is not there; ./dev check installs all of it.
set -eu
project=$(cd "$(dirname "$0")/../.." && pwd)
skip() {
    echo "skipped: $*; ./dev check installs it"
    exit 77
}
command -v node >/dev/null || skip "there is no node"
case $1 in
data) ;;
bundle) [ -d "$project/report/node_modules/esbuild" ] || skip "there is no report/node_modules" ;;
browser)
    [ -d "$project/report/node_modules/playwright-core" ] || skip "there is no report/node_modules"
    [ -x "${CORVID_CHROMIUM:=/usr/bin/chromium}" ] || skip "there is no Chromium"
    export CORVID_CHROMIUM
    ;;
esac
exec node --test --test-reporter=spec "$project/report/test/$1/"
