"""The engine's processes die under the visitor, and what the window showed comes back by itself."""

import time

from demo import WEB_PROCESS
from visitor import APPS

# As Tarn has it: a page that dies more often in this time is not loaded again, but says so.
MOST, SECONDS = 3, 60


class Crashes:
    def __init__(self, visitor):
        self.visitor = visitor
        self.times = []

    def strike(self, kind):
        """When all pages are there (a process that dies while it starts takes the program with it: the engine's fault),
        and until they are there again. Gives back how many processes died, and the apps whose pages are open."""
        visitor = self.visitor
        shown = self._shown()
        visitor.see_app(shown)
        apps = [app for app in APPS if app in visitor.opened]
        if kind == WEB_PROCESS:
            spare = lambda: len(self.times) < MOST or time.monotonic() - self.times[-MOST] > SECONDS
            visitor.wait(spare, "a time when no page is given up")
            # What the pages told before is forgotten.
            visitor.mark = len(visitor.demo.requests())
        killed = visitor.demo.kill(kind)
        for app in apps:
            visitor.wait(lambda: visitor.beacons(app, "loaded"), f"the page of {app} to come back")
        visitor.see_app(shown)
        if kind == WEB_PROCESS:
            # Tarn has heard of all deaths by now.
            self.times.append(time.monotonic())
        return len(killed), apps

    def _shown(self):
        states = self.visitor.demo.commands()[1]
        return next(app for number, app in enumerate(APPS, start=1) if states[f"show-app-{number}"])
