#!/usr/bin/env bash
# usage: bench/check.sh [--rounds N] [--documents N] [PART...]
#
# Times quillmark-cli check against pdffonts, mutool info -F and qpdf --json, in one run and on the
# same PDFs with warm caches, and prints the ratios beside their targets. It fails when something
# does not run, never because of a figure.
#
#   real       some 1,100 real PDFs, one process for each; the slowest; one process for all
#   memory     the most memory that each program takes for one of the real PDFs
#   growth     from 10 to 10,000 pages
#   pages      8,000 pages
#   shared     20,000 pages that share their resources
#
# Without a part: all of them, which takes some minutes. With --documents, only so many of the real
# PDFs, spread over all. The first run downloads 430 MB of Debian's documentation; that and the big
# PDFs made here stay in build/documents, and nothing but the measured programs is installed.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

if [[ ${1-} == -h || ${1-} == --help ]]; then
    print_usage
    exit
fi

"$root/scripts/install-dependencies" build bench
build_preset bench quillmark-cli
# The Python packages are those of the system's own Python.
PYTHONPATH=$root/bench/measure exec /usr/bin/python3 "$root/bench/check/compare.py" \
    --programs "$root/build/bench" --documents-folder "$root/build/documents" "$@"
