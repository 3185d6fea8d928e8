#!/usr/bin/python3
"""Measures Tarn, the floor and Chromium in turn, on the same pages, screen and machine.

    compare.py BUILD [--pairs N] [--idle SECONDS]

All starts and switches are timed from outside: from the start of the process, or the press of a key, to the moment when
the service hears from the page that it has painted two frames.
"""

import argparse
import json
import os
import platform
import select
import statistics
import subprocess
import tempfile
import time
from pathlib import Path

import processes
from programs import APPS, Chromium, Floor, Tarn

LIMIT = 60


class Services:
    """The stand-in services, and what their pages report, with the time of its coming."""

    def __init__(self, build):
        self.folder = Path(tempfile.mkdtemp(prefix="tarn-bench-services-"))
        fifo = self.folder / "log"
        os.mkfifo(fifo)
        self.log = os.open(fifo, os.O_RDONLY | os.O_NONBLOCK)
        self.rest = b""
        self.server = subprocess.Popen(
            [build / "stage/stage-server"], env=os.environ | {"TARN_STAGE_LOG": str(fifo)}, stdout=subprocess.PIPE, text=True
        )
        self.proxy = self.server.stdout.readline().strip()

    def close(self):
        self.server.terminate()
        self.server.wait()

    def _lines(self, timeout):
        if select.select([self.log], [], [], timeout)[0]:
            chunk = os.read(self.log, 1 << 20)
            now = time.monotonic()
            *lines, self.rest = (self.rest + chunk).split(b"\n")
            for line in lines:
                yield now, json.loads(line)

    def forget(self):
        while list(self._lines(0)):
            pass

    def wait_for(self, app, *events):
        """When the app's page said so."""
        end = time.monotonic() + LIMIT
        while time.monotonic() < end:
            for now, entry in self._lines(end - time.monotonic()):
                if entry["path"] != "/_stage/beacon" or entry["host"] != f"{app}.google.com":
                    continue
                beacon = json.loads(entry["body"])
                if beacon["top"] and beacon["event"] in events:
                    return now
        raise TimeoutError(f"{app} did not say {events}")


class Keyboard:
    """One helper for all keys, so that none waits for a process to start."""

    def __init__(self):
        self.hands = subprocess.Popen(["xdotool", "-"], stdin=subprocess.PIPE, text=True)

    def press(self, keys):
        now = time.monotonic()
        self.hands.stdin.write(f"key --clearmodifiers {keys}\n")
        self.hands.stdin.flush()
        return now


def spread(values):
    return f"{statistics.median(values):.1f} ({min(values):.1f}–{max(values):.1f})"


def describe_machine():
    with open("/proc/cpuinfo") as cpu:
        model = next(line.partition(": ")[2].strip() for line in cpu if line.startswith("model name"))
    return f"{os.cpu_count()} processors, {model}; {platform.platform()}; load {os.getloadavg()}"


class Figures:
    def __init__(self):
        self.values = {}

    def add(self, what, program, value):
        self.values.setdefault(what, {}).setdefault(program.name, []).append(value)

    def median(self, what, name):
        return statistics.median(self.values[what][name])

    def write(self):
        print(f"\n{'':58}" + "".join(f"{name:>26}" for name in ("Tarn", "floor", "Chromium")))
        for what, by_program in self.values.items():
            row = f"{what:58}"
            for name in ("Tarn", "floor", "Chromium"):
                values = by_program.get(name)
                row += f"{spread(values) if values else '':>26}"
            print(row)


class Targets:
    def __init__(self, figures):
        self.figures = figures

    def ratio(self, what, against, most):
        measured = self.figures.median(what, "Tarn") / self.figures.median(what, against)
        verdict = "met" if measured <= most else "MISSED"
        print(f"{what}: {measured:.2f} x {against}, target {most} x: {verdict}")

    def at_most(self, what, value, most, unit):
        print(f"{what}: {value:.1f} {unit}, target {most} {unit}: {'met' if value <= most else 'MISSED'}")


def settle():
    """What a program does right after it has painted is over."""
    time.sleep(4)


class Comparison:
    def __init__(self, build, pairs, idle):
        self.services = Services(build)
        self.keyboard = Keyboard()
        self.figures = Figures()
        self.programs = [kind(build, self.services.proxy) for kind in (Tarn, Floor, Chromium)]
        self.pairs = pairs
        self.idle = idle

    def start(self, program):
        self.services.forget()
        begin = time.monotonic()
        program.start()
        return 1000 * (self.services.wait_for("mail", "painted") - begin)

    def measure_starts(self):
        for turn in range(self.pairs):
            for program in self.programs:
                program.forget()
                self.figures.add("start, new folders (ms)", program, self.start(program))
                settle()
                self.memory(program, "one app")
                program.end()
                self.figures.add("start, folders of before (ms)", program, self.start(program))
                settle()
                if program.has_profiles:
                    self.measure_profiles(program)
                program.end()
            print(f"starts: {turn + 1} of {self.pairs}", flush=True)

    def memory(self, program, what):
        marks = [f"--user-data-dir={program.home}"] if isinstance(program, Chromium) else []
        own = program.process.pid
        self.figures.add(f"memory of all processes, {what} (MiB)", program, processes.memory(processes.tree(own, marks)))
        if program.has_keys:
            self.figures.add(f"memory of its own process, {what} (MiB)", program, processes.memory([own]))

    def open_all(self, program):
        for number, app in enumerate(APPS[1:], start=2):
            self.services.forget()
            if program.has_keys:
                begin = self.keyboard.press(f"ctrl+{number}")
                shown = self.services.wait_for(app, "painted")
                self.figures.add("first use of an app (ms)", program, 1000 * (shown - begin))
            else:
                program.open(app)
                self.services.wait_for(app, "painted")

    def measure_switches(self, program):
        shown = APPS[-1]
        for number, app in list(enumerate(APPS, start=1)) * 2:
            if app != shown:
                self.services.forget()
                begin = self.keyboard.press(f"ctrl+{number}")
                drawn = self.services.wait_for(app, "drawn")
                self.figures.add("switch to an app that is open (ms)", program, 1000 * (drawn - begin))
                shown = app

    def measure_profiles(self, program):
        """With one app open in one profile: the other profile's first page, and back."""
        for what, profile in (("first", "Work"), ("later", "Personal"), ("later", "Work")):
            self.services.forget()
            begin = time.monotonic()
            program.launch(profile)
            shown = self.services.wait_for("mail", "painted", "drawn")
            self.figures.add(f"profile switch, {what} (ms)", program, 1000 * (shown - begin))
            settle()

    def measure_idle(self, program):
        self.hide(program)
        # For a minute engines still slow down, tidy up and question pages that nobody sees any longer.
        time.sleep(75)
        marks = [f"--user-data-dir={program.home}"] if isinstance(program, Chromium) else []
        everyone = processes.tree(program.process.pid, marks)
        time_before = processes.processor_time(everyone)
        own_before = processes.sleeps(program.process.pid)
        time.sleep(self.idle)
        spent = (processes.processor_time(everyone) - time_before) * 60 / self.idle
        woken = processes.wake_ups(own_before, processes.sleeps(program.process.pid)) / self.idle
        self.figures.add("idle and hidden, seven apps: processor s in a minute", program, spent)
        self.figures.add("idle and hidden: own wake-ups a second", program, woken)

    def hide(self, program):
        if program.has_keys:
            self.keyboard.press("ctrl+w")
            return
        windows = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", "chromium"], capture_output=True, text=True
        ).stdout.split()
        for window in windows:
            subprocess.run(["xdotool", "windowminimize", window], check=False)

    def measure_seven(self):
        for turn in range(self.pairs):
            for program in self.programs:
                program.forget()
                self.start(program)
                settle()
                self.open_all(program)
                settle()
                self.memory(program, "seven apps")
                if program.has_keys:
                    self.measure_switches(program)
                if turn < 3:
                    self.measure_idle(program)
                program.end()
            print(f"seven apps: {turn + 1} of {self.pairs}", flush=True)

    def run(self):
        self.measure_starts()
        self.measure_seven()
        self.services.close()
        self.report()

    def report(self):
        chromium = subprocess.run(["chromium", "--version"], capture_output=True, text=True).stdout.strip()
        print(f"\n{describe_machine()}; {chromium}")
        print(f"medians (least–most), in turn, {self.pairs} rounds")
        self.figures.write()
        print()
        targets = Targets(self.figures)
        for what in ("start, new folders (ms)", "start, folders of before (ms)"):
            targets.ratio(what, "floor", 1.15)
            targets.ratio(what, "Chromium", 0.85)
        targets.ratio("memory of all processes, one app (MiB)", "Chromium", 0.65)
        targets.ratio("memory of all processes, one app (MiB)", "floor", 1.05)
        targets.ratio("memory of all processes, seven apps (MiB)", "Chromium", 0.9)
        targets.ratio("memory of all processes, seven apps (MiB)", "floor", 1.05)
        targets.ratio("memory of its own process, one app (MiB)", "floor", 1.2)
        targets.ratio("memory of its own process, seven apps (MiB)", "floor", 1.2)
        switch = "switch to an app that is open (ms)"
        targets.at_most(
            "switch, over the floor's", self.figures.median(switch, "Tarn") - self.figures.median(switch, "floor"), 16.7, "ms"
        )
        wake = self.figures.median("idle and hidden: own wake-ups a second", "Tarn")
        targets.at_most("own wake-ups, idle", wake, 1.0, "a second")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=Path)
    parser.add_argument("--pairs", type=int, default=10)
    parser.add_argument("--idle", type=int, default=60)
    arguments = parser.parse_args()
    Comparison(arguments.build.absolute(), arguments.pairs, arguments.idle).run()


if __name__ == "__main__":
    main()
