#!/usr/bin/python3
"""Drives the built application through what its users do, and reads the results off the screen.

usage: with-desktop.sh /usr/bin/python3 check.py [--pictures FOLDER] [--part NAME]
           PROGRAM DRAG_SOURCE [FLOW...]

Each flow is a function in one of the parts: list, files, desktop; FLOW names those to run, all by
default. A flow finds the application running, with an empty home, its installed list shown, and
leaves it to the next. After one that fails, the application is started anew; what the screen showed
goes to FOLDER. Ends with "N passed, N failed".
"""

import argparse
import sys
import traceback
from pathlib import Path

import flows_desktop
import flows_files
import flows_list
from flows import Flows
from window import Check
from world import World

PARTS = {"list": flows_list.FLOWS, "files": flows_files.FLOWS, "desktop": flows_desktop.FLOWS}


def ends_well(check):
    try:
        code = check.app.quit()
        assert code == 0, f"the exit code is {code}"
        return True
    except Exception:
        traceback.print_exc(file=sys.stdout)
        check.app.kill()
        return False


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--pictures", type=Path)
    parser.add_argument("--part", choices=PARTS)
    parser.add_argument("program")
    parser.add_argument("drag_source")
    parser.add_argument("flows", nargs="*")
    arguments = parser.parse_args()
    flows = PARTS.get(arguments.part) or Flows(sum(PARTS.values(), []))
    check = Check(World(arguments.program), arguments.drag_source)
    check.start()
    passed, failed = flows.run(check, arguments.flows, arguments.pictures)
    if ends_well(check):
        passed += 1
    else:
        failed += 1
    print(f"{passed} passed, {failed} failed")
    return failed != 0


if __name__ == "__main__":
    sys.exit(main())
