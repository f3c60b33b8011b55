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

# passed OUTPUT: how many tests passed according to CTest's OUTPUT, without those that were skipped.
passed() {
    passed_total=$(echo "$1" | sed -n 's/.* out of \([0-9]*\)$/\1/p')
    echo $((passed_total - $(echo "$1" | grep -c '\*\*\*Skipped' || true)))
}
