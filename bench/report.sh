#!/usr/bin/env bash
# usage: bench/report.sh [--rounds N] [PART...]
#
# Times PDF reports against laying out the same text with Pango line by line, in one run, and prints
# the ratios beside their targets. It fails when something does not run, never because of a figure.
#
#   rows     5,000 fonts: time, size of the file, memory
#   growth   from 100 to 50,000 fonts
#   hostile  strings of 32,767 characters that are made to take long
#
# Without a part: all of them.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

if [[ ${1-} == -h || ${1-} == --help ]]; then
    print_usage
    exit
fi

"$root/scripts/install-dependencies" build bench
build_preset bench bench_report
PYTHONPATH=$root/bench/measure exec /usr/bin/python3 "$root/bench/report/compare.py" \
    --programs "$root/build/bench" "$@"
