# shellcheck shell=sh

# step TEXT: prints what the script does next.
step() {
    printf '\n== %s\n' "$*"
}

# quietly COMMAND...: runs COMMAND and shows its output only when it fails; returns its status.
quietly() {
    quietly_output=$("$@" 2>&1 </dev/null) && return
    quietly_status=$?
    printf '%s\nFailed: %s\n' "$quietly_output" "$*" >&2
    return "$quietly_status"
}

# run_ctest ARGUMENT...: prints how many tests passed and which were skipped, or why one failed.
run_ctest() {
    ctest_output=$(ctest --no-tests=error --output-on-failure -j "$(nproc)" "$@") || {
        echo "$ctest_output" | grep -Ev '^ +Start | Passed ' >&2
        return 1
    }
    echo "$ctest_output" | grep -E 'tests passed|\(Skipped\)'
}
