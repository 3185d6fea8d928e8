"""Waiting for what can be seen, never for a time."""

import subprocess
import time

from gi.repository import GLib

# For a machine that is busy with something else. What comes true is seen at once.
LIMIT = 120


class NotTrue(Exception):
    """Something is not as it should be."""


def expect(condition, otherwise):
    if not condition:
        raise NotTrue(otherwise)


def wait_for(look, what, limit=LIMIT):
    """Looks until something is seen, and gives it back. A thing that vanishes while it is looked at is not seen."""
    end = time.monotonic() + limit
    while True:
        while GLib.MainContext.default().iteration(False):
            pass
        reason = ""
        try:
            if seen := look():
                return seen
        except (GLib.Error, subprocess.CalledProcessError, LookupError) as error:
            reason = f" ({error})"
        if time.monotonic() > end:
            raise NotTrue(f"{what}: not seen within {limit} seconds{reason}")
        time.sleep(0.05)
