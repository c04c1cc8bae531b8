#!/usr/bin/env bash
# usage: bench/all.sh [--rounds N]
#
# Runs every comparison of this folder, one after the other, and prints all ratios beside their
# targets: scans, checks, reports and the window. It takes about an hour, the first time more, for a
# gigabyte of fonts and documents is fetched. Nothing else should run meanwhile.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

if [[ ${1-} == -h || ${1-} == --help ]]; then
    print_usage
    exit
fi

for comparison in scan check report window; do
    printf '\n== bench/%s.sh\n' "$comparison"
    "$root/bench/$comparison.sh" "$@"
done
