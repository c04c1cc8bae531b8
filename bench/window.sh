#!/usr/bin/env bash
# usage: bench/window.sh [--rounds N] [PART...]
#
# Times the window on a screen of its own, and prints what it takes beside the targets. It fails
# when something does not run, never because of a figure.
#
#   start     until the window is seen, against one with the same widgets and no data; memory
#   folder    the longest stall and the memory while 10,000 and 5,000 fonts are read
#   document  the longest stall while a document of 2,000 pages is checked
#
# Without a part: all of them.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

if [[ ${1-} == -h || ${1-} == --help ]]; then
    print_usage
    exit
fi

"$root/scripts/install-dependencies" build test bench
build_preset bench bench_window
PYTHONPATH=$root/bench/measure:$root/bench/check exec "$root/tests/desktop/with-desktop.sh" \
    /usr/bin/python3 "$root/bench/window/compare.py" --programs "$root/build/bench" "$@"
