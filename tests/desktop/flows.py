"""Runs what a person does in the window, one flow after the other, and tells how each went."""

import sys
import time
import traceback


def passes(flow, check, pictures):
    """Whether a flow goes through from its start, `check.begin()`. Of one that fails, the folder
    `pictures`, unless it is None, gets a picture of the window, if there is one."""
    begun = time.monotonic()
    try:
        check.begin()
        flow(check)
        print(f"pass {flow.__name__} ({time.monotonic() - begun:.1f} s)", flush=True)
        return True
    except (Exception, SystemExit):
        print(f"FAIL {flow.__name__} ({time.monotonic() - begun:.1f} s)", flush=True)
        traceback.print_exc(file=sys.stdout)
        if pictures and check.app:
            pictures.mkdir(parents=True, exist_ok=True)
            check.app.picture(pictures / f"{flow.__name__}.png")
        return False
