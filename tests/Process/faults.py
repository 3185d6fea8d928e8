#!/usr/bin/env python3
"""What goes wrong around the real program: saves that fail, a session bus that ends, a clock that is set back, other
users who look. faults.py TARN-DEMO LIBRARY; run it by scripts/with-desktop. With TARN_FAULTS=all each call that saves
fails in every way, instead of in one."""

import errno
import json
import os
import pathlib
import signal
import stat
import subprocess
import sys
import unittest

from process_test import PATIENCE, PROGRAM, ProcessTest, wait_for

LIBRARY = os.path.abspath(sys.argv.pop(1))
ERRORS = (errno.ENOSPC, errno.EIO, errno.EACCES)


def descendants(root):
    parents = {}
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            fields = (folder / "stat").read_text().rpartition(")")[2].split()
            parents[int(folder.name)] = int(fields[1])
        except (FileNotFoundError, ProcessLookupError):
            pass
    found = {root}
    grown = True
    while grown:
        new = {process for process, parent in parents.items() if parent in found} - found
        grown = bool(new)
        found |= new
    return found - {root}


def name(process):
    try:
        return pathlib.Path(f"/proc/{process}/comm").read_text().strip()
    except (FileNotFoundError, ProcessLookupError):
        return ""


class Faults(ProcessTest):
    def setUp(self):
        super().setUp()
        self.calls = self.scratch / "calls"
        self.clock = self.scratch / "clock"
        self.faulty = {
            "LD_PRELOAD": LIBRARY,
            "FAULT_PROGRAM": os.path.basename(PROGRAM),
            "FAULT_FOLDER": os.path.join(self.home, b"state", b"tarn-demo"),
            "FAULT_LOG": str(self.calls),
            "FAULT_CLOCK": str(self.clock),
            "FAULT_AT": "0",
            "FAULT_ERROR": "0",
            # A sanitizer's own library wants to be the first.
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0",
        }

    def pages(self, account):
        """How many pages of this account have loaded."""
        return sum(r["account"] == account and r["path"] == "/_stage/beacon" and '"loaded"' in r["body"]
                   for r in self.requests())

    def wait_for_page(self, account, before=0):
        wait_for(lambda: self.pages(account) > before, f"a page of {account}")

    def saved(self):
        with open(self.profiles, encoding="utf-8") as file:
            return json.load(file)

    def work_and_end(self, environment):
        """Starts, has the first page, changes the profile, and ends."""
        before = {account: self.pages(account) for account in ("ada", "bo")}
        process = self.start(**environment)
        wait_for(lambda: any(self.pages(account) > count for account, count in before.items()), "a first page")
        saved = self.saved()
        active = next(p["name"] for p in saved["profiles"] if p["id"] == saved["activeID"])
        profile, account = ("Work", "bo") if active == "Personal" else ("Personal", "ada")
        before = self.pages(account)
        subprocess.run([PROGRAM, "--profile", profile], env=self.environment, check=True, timeout=PATIENCE)
        self.wait_for_page(account, before)
        self.assertIsNone(process.poll(), "it goes on")
        self.assertEqual(self.end(process, signal.SIGTERM), 0)
        wait_for(lambda: not self.session(process.pid), "the end of its processes")

    def test_every_save_may_fail_once(self):
        self.work_and_end(self.faulty)
        fresh = [line.split(maxsplit=2) for line in self.calls.read_text().splitlines()]
        names = [profile["name"] for profile in self.saved()["profiles"]]
        self.assertEqual(names, ["Personal", "Work"])
        self.assertGreater(len(fresh), 10)
        self.calls.unlink()
        self.work_and_end(self.faulty)
        count = len(self.calls.read_text().splitlines())
        self.assertGreater(count, 5)
        tried = 0
        for number in range(1, count + 1):
            for error in ERRORS if os.environ.get("TARN_FAULTS") == "all" else (ERRORS[number % len(ERRORS)],):
                self.calls.unlink(missing_ok=True)
                with self.subTest(number=number, error=errno.errorcode[error]):
                    self.work_and_end(self.faulty | {"FAULT_AT": str(number), "FAULT_ERROR": str(error)})
                    lines = self.calls.read_text().splitlines()
                    failed = [line for line in lines if line.endswith(" FAILS")]
                    tried += len(failed)
                    self.assertEqual([p["name"] for p in self.saved()["profiles"]], names, failed)
                    rest = [os.fsdecode(entry) for entry in os.listdir(os.path.dirname(self.profiles))]
                    self.assertFalse([entry for entry in rest if entry.endswith(".tmp") or "unreadable" in entry], failed)
        print(f"{count} calls save, {tried} failures tried", flush=True)
        self.assertGreaterEqual(tried, count)

    def test_a_first_start_may_fail_to_save(self):
        """Whatever fails at the first start: the next one works, and finds the profiles that were saved, or none."""
        process = self.start("--hidden", **self.faulty)
        wait_for(lambda: os.path.exists(self.profiles) and len(self.saved()["profiles"]) == 2, "profiles")
        self.assertEqual(self.end(process, signal.SIGTERM), 0)
        lines = self.calls.read_text().splitlines()
        everything = os.environ.get("TARN_FAULTS") == "all"
        for number in range(1, len(lines) + 1, 1 if everything else 4):
            with self.subTest(call=lines[number - 1]):
                subprocess.run(["rm", "-rf", os.path.join(self.home, b"state", b"tarn-demo")], check=True)
                error = ERRORS[number % len(ERRORS)]
                process = self.start(**self.faulty | {"FAULT_AT": str(number), "FAULT_ERROR": str(error)})
                before = len(self.requests())
                wait_for(lambda: process.poll() is not None or len(self.requests()) > before, "a page, or an end")
                # A stand-in start that cannot make its folders may end, saying so; it must not crash.
                self.assertIn(self.end(process, signal.SIGTERM), (0, 1))
                before = len(self.requests())
                process = self.start()
                wait_for(lambda: len(self.requests()) > before, "a page of the next start")
                self.assertEqual(self.end(process, signal.SIGTERM), 0)
                self.assertIn(len(self.saved()["profiles"]), (1, 2))

    def test_the_session_bus_may_end(self):
        bus = subprocess.Popen(
            ["dbus-daemon", "--config-file", f"{os.environ['TARN_DESKTOP_HOME']}/session.conf", "--nofork",
             f"--address=unix:path={self.scratch}/bus", "--print-address"],
            stdout=subprocess.PIPE, text=True)
        self.addCleanup(lambda: (bus.kill(), bus.wait(), bus.stdout.close()))
        process = self.start(DBUS_SESSION_BUS_ADDRESS=bus.stdout.readline().strip())
        self.wait_for_page("ada")
        bus.kill()
        bus.wait()
        # The pages still come: Ctrl+2 is Calendar, which was not open.
        wait_for(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(process.pid)],
                                        capture_output=True, check=False).stdout, "the window")
        subprocess.run(["xdotool", "key", "ctrl+2"], check=True)
        wait_for(lambda: any(r["host"] == "calendar.google.com" for r in self.requests()), "the next page")
        self.assertIsNone(process.poll())
        self.assertEqual(self.end(process, signal.SIGTERM), 0)

    def test_the_clock_may_be_set_back(self):
        self.work_and_end(self.faulty)
        before = self.pages("bo")
        process = self.start(**self.faulty)
        self.wait_for_page("bo", before)
        self.clock.touch()
        for profile, account in (("Personal", "ada"), ("Work", "bo"), ("Personal", "ada")):
            before = self.pages(account)
            subprocess.run([PROGRAM, "--profile", profile], env=self.environment, check=True, timeout=PATIENCE)
            self.wait_for_page(account, before)
        self.assertEqual(self.end(process, signal.SIGTERM), 0)
        self.work_and_end(self.faulty)
        self.assertEqual([p["name"] for p in self.saved()["profiles"]], ["Personal", "Work"])

    def test_other_users_read_nothing_and_pages_run_in_the_sandbox(self):
        mask = os.umask(0)
        try:
            process = self.start()
        finally:
            os.umask(mask)
        self.wait_for_page("ada")
        # Inside a Flatpak the pages' sandbox is Flatpak's.
        if "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS" not in os.environ and not os.path.exists("/.flatpak-info"):
            self.check_sandbox(process)
        self.assertEqual(self.end(process, signal.SIGTERM), 0)
        self.assertEqual(self.readable(os.path.join(self.home, b"state", b"tarn-demo")), [])

    def check_sandbox(self, process):
        pages = [child for child in descendants(process.pid) if name(child) == "WebKitWebProces"]
        self.assertTrue(pages)
        for page in pages:
            status = pathlib.Path(f"/proc/{page}/status").read_text()
            self.assertIn("NoNewPrivs:\t1", status)
            self.assertIn("Seccomp:\t2", status)
            if os.geteuid() != 0:
                self.assertIn("CapEff:\t0000000000000000", status)
            for kind in ("mnt", "pid"):
                self.assertNotEqual(os.readlink(f"/proc/{page}/ns/{kind}"), os.readlink(f"/proc/self/ns/{kind}"))
            # Neither the user's files nor those of the profiles.
            self.assertFalse(os.path.exists(f"/proc/{page}/root{os.fsdecode(self.profiles)}"))

    @staticmethod
    def readable(folder):
        """What others could open, looking from the outside in."""
        found = []
        for entry in os.scandir(folder):
            mode = entry.stat(follow_symlinks=False).st_mode
            if stat.S_ISDIR(mode):
                if mode & 0o055 == 0:
                    continue
                found += Faults.readable(entry.path)
            if mode & 0o066:
                found.append(entry.path)
        return found


if __name__ == "__main__":
    unittest.main(verbosity=2)
