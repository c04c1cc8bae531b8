"""Runs what a person does in the window, one flow after the other, and tells how each went."""

import sys
import time
import traceback


class Flows(list):
    """Functions that take a check and do what a person does. A check has `begin`, which brings the
    application to where each flow begins, `recover`, called after one that has failed, and `app`,
    the application that runs or None."""

    def add(self, flow):
        self.append(flow)
        return flow

    def run(self, check, names, pictures):
        """The numbers of flows that went through and that failed, of those in `names` or, without
        any, of all. A flow that fails is tried a second time, and told apart if it goes through
        then: other programs share the processor and the bus with it. Of each failure the folder
        `pictures`, unless it is None, gets a picture of the window."""
        passed = failed = 0
        for flow in self:
            if names and flow.__name__ not in names:
                continue
            if passes(flow, check, pictures):
                passed += 1
                continue
            check.recover()
            if passes(flow, check, pictures):
                print(f"{flow.__name__} went through at the second attempt only", flush=True)
                passed += 1
            else:
                check.recover()
                failed += 1
        return passed, failed


def passes(flow, check, pictures):
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
