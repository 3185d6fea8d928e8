#!/usr/bin/python3
"""Measures what grows with views and with profiles, and how.

    growth.py BUILD [--rounds N]

Views: one app; all seven; and fourteen windows beside them, each with a message begun from a mailto link. Profiles: as
many in the store, of which one is worked in, as always. Processor time is the application's own process's.
"""

import argparse
import json
import subprocess
import time
import uuid
from pathlib import Path

import processes
from compare import Keyboard, Services, describe_machine, settle, spread
from programs import APPS, Tarn

COMPOSE_WINDOWS = 14
PROFILES = (1, 10, 100)


class Growth:
    def __init__(self, build, rounds):
        self.services = Services(build)
        self.keyboard = Keyboard()
        self.tarn = Tarn(build, self.services.proxy)
        self.rounds = rounds
        self.values = {}

    def add(self, what, size, value):
        self.values.setdefault(what, {}).setdefault(size, []).append(value)

    def start(self):
        self.services.forget()
        begin = time.monotonic()
        self.tarn.start()
        return 1000 * (self.services.wait_for("mail", "painted") - begin)

    def memory(self, of, size):
        settle()
        own = [self.tarn.process.pid]
        for whose, some in (("all processes", processes.tree(own[0])), ("its own process", own)):
            self.add(f"{of}: memory of {whose} (MiB)", size, processes.memory(some))
            self.add(f"{of}: written memory of {whose} (MiB)", size, processes.written_memory(some))

    def measure_views(self):
        self.tarn.forget()
        self.start()
        self.memory("views", 1)
        for number, app in enumerate(APPS[1:], start=2):
            self.keyboard.press(f"ctrl+{number}")
            self.services.wait_for(app, "painted")
        self.memory("views", len(APPS))
        for _ in range(COMPOSE_WINDOWS):
            self.services.forget()
            self.tarn.launch(urls=["mailto:ines@news.example?subject=The%2014th"])
            self.services.wait_for("mail", "painted")
        self.memory("views", len(APPS) + COMPOSE_WINDOWS)
        self.tarn.end()

    def fill_store(self, count):
        """As many profiles as that, made after the one that the first start makes."""
        self.tarn.forget()
        self.start()
        settle()
        self.tarn.end()
        file = self.tarn.home / "tarn-demo/data/Tarn/v2/profiles.json"
        store = json.loads(file.read_text())
        first = next(profile for profile in store["profiles"] if profile["id"] == store["activeID"])
        others = [first | {"id": str(uuid.uuid4()).upper(), "name": f"Profile {number}"} for number in range(2, count + 1)]
        file.write_text(json.dumps(store | {"profiles": [first, *others]}))

    def measure_profiles(self, count):
        self.fill_store(count)
        self.add("profiles: start (ms)", count, self.start())
        self.memory("profiles", count)
        own = self.tarn.process.pid
        self.add("profiles: processor time until then (ms)", count, 1000 * processes.running_time(own))
        for what in ("first", "later"):
            before = processes.running_time(own)
            self.click_profile_button()
            settle()
            self.add(f"profiles: menu, {what}: processor time (ms)", count, 1000 * (processes.running_time(own) - before))
            self.keyboard.press("Escape")
            settle()
        self.tarn.end()

    def click_profile_button(self):
        """At the lower end of the sidebar."""
        window = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", self.tarn.bus_name], check=True, capture_output=True, text=True
        ).stdout.split()[-1]
        geometry = subprocess.run(
            ["xdotool", "getwindowgeometry", "--shell", window], check=True, capture_output=True, text=True
        ).stdout
        place = dict(line.split("=") for line in geometry.split())
        x, y = int(place["X"]) + 29, int(place["Y"]) + int(place["HEIGHT"]) - 34
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True)

    def run(self):
        try:
            for turn in range(self.rounds):
                self.measure_views()
                for count in PROFILES:
                    self.measure_profiles(count)
                print(f"growth: {turn + 1} of {self.rounds}", flush=True)
        finally:
            self.tarn.end()
            self.services.close()
        print(f"\n{describe_machine()}\nmedians (least–most), {self.rounds} rounds")
        for what, by_size in self.values.items():
            print(f"{what:58}" + "".join(f"{size:>4}: {spread(values):22}" for size, values in by_size.items()))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=Path)
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()
    Growth(arguments.build.absolute(), arguments.rounds).run()


if __name__ == "__main__":
    main()
