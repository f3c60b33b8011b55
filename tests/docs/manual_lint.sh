#!/bin/sh
# Checks that mandoc and man find nothing wrong with a manual page, and that it names the version.
#
# usage: manual_lint.sh PAGE VERSION

set -eu

# Whether other manuals are installed on this machine does not matter.
findings=$(
    mandoc -T lint -W style "$1" 2>&1 | grep -Ev 'outdated mandoc.db|referenced manual not found' || :
    MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$1" 2>&1 >/dev/null
    grep -qxF ".Os events-viewer $2" "$1" || echo "$1: the line .Os does not name the version $2"
)
if [ -n "$findings" ]; then
    printf '%s\n' "$findings"
    exit 1
fi
