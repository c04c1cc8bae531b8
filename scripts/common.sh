# What the scripts share. Sourced, never run.
#
# shellcheck shell=bash
# shellcheck disable=SC2034 # the variables are used by the scripts that source this file

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

die() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# The comment at the top of the calling script, without its "# ": its help text.
print_usage() {
    awk 'NR > 1 { if (!/^#/) exit; sub(/^# ?/, ""); print }' "$0"
}

# How many compilers may run at once: one for each core, but no more than memory holds. A source of
# ours with its tests takes up to 550 MB under the sanitizers; a container's limit counts as memory.
build_jobs() {
    local memory file limit jobs
    memory=$(awk '/^MemAvailable:/ { print int($2 / 1024) }' /proc/meminfo)
    for file in /sys/fs/cgroup/memory.max /sys/fs/cgroup/memory/memory.limit_in_bytes; do
        limit=$(cat "$file" 2>/dev/null || echo max)
        if [[ $limit =~ ^[0-9]{1,18}$ ]] && ((limit / 1048576 < memory)); then
            memory=$((limit / 1048576))
        fi
    done
    jobs=$((memory / 700))
    ((jobs > $(nproc))) && jobs=$(nproc)
    ((jobs < 1)) && jobs=1
    echo "$jobs"
}

# run_stage TITLE COMMAND...: runs the command, says how long it took, and stops where it fails.
run_stage() {
    local title=$1 start=$SECONDS
    shift
    printf '== %s\n' "$title"
    "$@" || die "failed: $title"
    printf '== %s: %d s\n\n' "$title" "$((SECONDS - start))"
}

# retried LOG COMMAND...: like logged, for what depends on a network: up to three times.
retried() {
    local log=$1 attempt
    for attempt in 1 2; do
        "${@:2}" >>"$log" 2>&1 </dev/null && return
        sleep $((attempt * 5))
    done
    logged "$@"
}

# logged LOG COMMAND...: adds what the command prints to a file; shows its end if the command fails.
logged() {
    local log=$1
    shift
    if ! "$@" >>"$log" 2>&1 </dev/null; then
        tail -n 40 "$log" >&2
        die "$1 failed; all of its output is in $log"
    fi
}

# build_preset PRESET [TARGET...]: configures and builds, and shows one line for each step.
build_preset() {
    local preset=$1 log="$root/build/$1.log" start=$SECONDS
    shift
    mkdir -p "$root/build"
    : >"$log"
    (cd "$root" && logged "$log" cmake --preset "$preset" &&
        logged "$log" cmake --build --preset "$preset" -j "$(build_jobs)" ${1:+--target "$@"}) ||
        exit 1
    printf 'Built %s in %d s (details: build/%s.log).\n' "$preset" "$((SECONDS - start))" "$preset"
}
