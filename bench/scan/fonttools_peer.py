"""Reads the fonts named on standard input, one path a line, as a careful script would: lazily, only
`name` and `OS/2` of each face. Prints JSON."""

import json
import sys

from fontTools.ttLib import TTCollection, TTFont, TTLibError

NAMES = {
    "copyright": 0,
    "family": 1,
    "style": 2,
    "fullName": 4,
    "postScriptName": 6,
    "trademark": 7,
    "manufacturer": 8,
    "designer": 9,
    "vendorURL": 11,
    "licenseDescription": 13,
    "licenseURL": 14,
}


def faces(path):
    if path.lower().endswith((".ttc", ".otc")):
        yield from TTCollection(path, lazy=True)
    else:
        with TTFont(path, lazy=True) as font:
            yield font


def facts(font):
    table = font["name"]
    found = {key: table.getDebugName(number) for key, number in NAMES.items()}
    if "OS/2" in font:
        found["fsType"] = font["OS/2"].fsType
    return found


records = []
for line in sys.stdin:
    path = line.rstrip("\n")
    try:
        records.extend(facts(font) | {"path": path} for font in faces(path))
    except (TTLibError, KeyError, AssertionError) as error:
        print(f"{path}: {error}", file=sys.stderr)
json.dump(records, sys.stdout)
