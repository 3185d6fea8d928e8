"""The real program on the stand-in services, in folders of its own."""

import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = os.path.abspath(sys.argv.pop(1))
IDENTIFIER = "io.github.tarn.Tarn.Demo"
PATIENCE = 60  # seconds; no test that passes waits for it


def wait_for(condition, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.05)
    raise AssertionError(f"waited in vain: {what}")


class ProcessTest(unittest.TestCase):
    HOME = b"a home"

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        self.home = os.path.join(os.fsencode(scratch.name), self.HOME)
        # Where it is started; nothing of it may land there.
        self.working = self.scratch / "working"
        self.working.mkdir()
        self.addCleanup(lambda: self.assertEqual(list(self.working.iterdir()), []))
        self.log = pathlib.Path(scratch.name, "requests")
        self.environment = dict(os.environb)
        for folder in (b"data", b"config", b"cache", b"state"):
            path = os.path.join(self.home, folder)
            os.makedirs(path)
            self.environment[b"XDG_" + folder.upper() + b"_HOME"] = path
        self.environment[b"TARN_STAGE_LOG"] = os.fsencode(self.log)
        self.folder = os.path.join(self.home, b"state", b"tarn-demo", b"data", b"Tarn", b"v2")
        self.profiles = os.path.join(self.folder, b"profiles.json")

    def start(self, *arguments, before=(), **changes):
        changed = {os.fsencode(name): os.fsencode(value) for name, value in changes.items()}
        process = subprocess.Popen(
            [*before, PROGRAM, *arguments], env=self.environment | changed, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, cwd=self.working, start_new_session=True)
        self.addCleanup(self.end, process, signal.SIGKILL)
        return process

    def end(self, process, number):
        if process.poll() is None:
            process.send_signal(number)
        return process.wait(PATIENCE)

    def requests(self):
        lines = self.log.read_text().splitlines() if self.log.exists() else []
        return [json.loads(line) for line in lines if line.endswith("}")]

    @staticmethod
    def session(leader):
        found = subprocess.run(["ps", "-o", "pid=", "-s", str(leader)], capture_output=True, text=True, check=False)
        return found.stdout.split()
