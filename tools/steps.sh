# Sourced by tv, check and tools/setup: a line for each step, the noise of its commands in a log that errors name.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
logs=$root/build/log

say() {
    printf '%s\n' "$*"
}

complain() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
}

# step_failed WHAT LOG: one sentence, and the last lines of what the commands wrote.
step_failed() {
    complain "$1; all of its output is in $2, and this is the end of it:"
    tail -n 15 "$2" | sed 's/^/    /' >&2
    return 1
}

# logged NAME COMMAND...: runs the command silently, its output goes into build/log/NAME.txt.
logged() {
    local log=$logs/$1.txt
    shift
    mkdir -p "$logs"
    "$@" >"$log" 2>&1 </dev/null
}

# Passes on ninja's progress: in a terminal as one line that moves, elsewhere as a line for every tenth.
show_progress() {
    local line done total tenth=0
    while IFS= read -r line; do
        [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] || continue
        done=${BASH_REMATCH[1]} total=${BASH_REMATCH[2]}
        if [ -t 1 ]; then
            printf '\r\033[K  %.*s' "$((${COLUMNS:-80} - 3))" "$line"
        elif ((done * 10 / total > tenth)); then
            tenth=$((done * 10 / total))
            say "  $done of $total"
        fi
    done
    [ -t 1 ] && printf '\r\033[K'
    return 0
}

# build PRESET TARGET...: configures and builds, with progress.
build() {
    local preset=$1 log=$logs/build-$1.txt
    shift
    logged "configure-$preset" cmake -S "$root" --preset "$preset" ||
        step_failed "The preset '$preset' could not be configured" "$logs/configure-$preset.txt" || return
    cmake --build "$root/build/$preset" --target "$@" 2>&1 </dev/null | tee "$log" | show_progress
    [ "${PIPESTATUS[0]}" = 0 ] || step_failed "The preset '$preset' could not be built" "$log"
}
