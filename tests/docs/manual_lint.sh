#!/bin/sh
# Checks that mandoc and man find nothing wrong with a manual page.
#
# usage: manual_lint.sh PAGE

set -eu

# Whether other manuals are installed here is not the page's matter.
remarks=$(
    mandoc -T lint -W style "$1" 2>&1 | grep -Ev 'outdated mandoc.db|referenced manual not found' || :
    MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$1" 2>&1 >/dev/null
)
if [ -n "$remarks" ]; then
    printf '%s\n' "$remarks"
    exit 1
fi
