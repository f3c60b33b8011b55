#!/bin/sh
# wide_offsets_test.sh NM PROGRAM: the program must open files by the calls that reach beyond 2 GiB.
# An emulator on a 64-bit machine opens such a file either way, so this checks the program's imports.

imports=$("$1" --dynamic --undefined-only "$2") || exit
echo "$imports"
if ! echo "$imports" | grep -q ' open64\(@\|$\)'; then
    echo "open64 is not among the imports"
    exit 1
fi
if echo "$imports" | grep -E ' (open|fopen|lseek|fseeko|stat|fstat)(@|$)'; then
    echo "narrow"
    exit 1
fi
