#!/usr/bin/env bash
# usage: bench/scan.sh [--rounds N] [PART...]
#
# Times quillmark-cli against fc-scan, otfinfo, fontTools and the yardsticks of this folder, in one
# run and on the same fonts with warm caches, and prints the ratios beside their targets. It fails
# when something does not run, never because of a figure.
#
#   plain      TrueType, OpenType and collections: about 3,500 files
#   web        plain fonts with WOFF and WOFF2 among them
#   cores      one core and two
#   processes  reading in processes of their own, and in the same one
#   size       a collection of 20 MB and a font of 20 KB
#   number     100, 1,000 and 10,000 files
#   memory     8,000 faces
#   installed  about 5,000 installed fonts
#
# Without a part: all of them. The first run downloads 500 MB of Debian's font packages and converts
# some of the fonts, for some minutes; all of that stays in build/fonts, and nothing but the
# measured programs is installed.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

if [[ ${1-} == -h || ${1-} == --help ]]; then
    print_usage
    exit
fi

"$root/scripts/install-dependencies" build bench
build_preset bench quillmark-cli bench_floor bench_here bench_listing
# The peers' Python packages are those of the system's own Python.
PYTHONPATH=$root/bench/measure exec /usr/bin/python3 "$root/bench/scan/compare.py" \
    --programs "$root/build/bench" --fonts "$root/build/fonts" "$@"
