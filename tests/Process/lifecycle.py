#!/usr/bin/env python3
"""The life of the real program, on the stand-in services. lifecycle.py TARN-DEMO; run it by scripts/with-desktop."""

import json
import os
import pathlib
import random
import signal
import subprocess
import time
import unittest

from process_test import IDENTIFIER, PATIENCE, PROGRAM, ProcessTest, wait_for


class Lifecycle(ProcessTest):
    # Neither UTF-8 nor without a space.
    HOME = b"a home \xff"

    def composed(self, query):
        """Asked for by someone who is signed in."""
        return lambda: any(r["query"] == query and r["host"] == "mail.google.com" and r["account"]
                           for r in self.requests())

    def test_links_reach_one_instance_unchanged_and_it_ends_cleanly(self):
        before = os.listdir(os.environ["XDG_RUNTIME_DIR"])
        first = self.start("mailto:a@b?subject=x%20y", "http://other.example/")
        wait_for(self.composed("view=cm&fs=1&to=a@b&su=x%20y"), "the link that started the program")
        second = self.start("mailto:c%40d@e/../f?subject=1%2B1")
        self.assertEqual(second.wait(PATIENCE), 0)
        wait_for(self.composed("view=cm&fs=1&to=c@d@e/../f&su=1%2B1"), "the link of a second start")

        applications = os.path.join(self.home, b"data", b"applications")
        os.makedirs(applications)
        with open(os.path.join(applications, os.fsencode(IDENTIFIER + ".desktop")), "w", encoding="utf-8") as file:
            file.write(f"[Desktop Entry]\nType=Application\nName=Tarn\nExec={PROGRAM} %U\n"
                       "MimeType=x-scheme-handler/mailto;\n")
        with open(os.path.join(self.home, b"config", b"mimeapps.list"), "w", encoding="utf-8") as file:
            file.write(f"[Default Applications]\nx-scheme-handler/mailto={IDENTIFIER}.desktop\n")
        subprocess.run(["gio", "open", "mailto:g@h?subject=%C3%A4"], env=self.environment, check=True)
        wait_for(self.composed("view=cm&fs=1&to=g@h&su=%C3%A4"), "the link that the desktop handed over")

        self.assertEqual(self.end(first, signal.SIGTERM), 0)
        wait_for(lambda: not self.session(first.pid), "the end of every process of the session")
        with open(self.profiles, encoding="utf-8") as file:
            active = json.load(file)["activeID"]
        cookies = os.path.join(self.folder, b"WebsiteData", os.fsencode(active), b"cookies.sqlite")
        with open(cookies, "rb") as file:
            self.assertIn(b"google.com", file.read(), "the sign-in is kept where it belongs")
        # The second names of its two folders are still there for what the engine wrote last, and lead there.
        left = set(os.listdir(os.environ["XDG_RUNTIME_DIR"])) - set(before)
        aliases = [os.path.join(os.environ["XDG_RUNTIME_DIR"], name, "folder") for name in left if "tarn-" in name]
        self.assertEqual([os.path.islink(alias) for alias in aliases], [True, True])

    def test_starts_without_a_session_bus_and_an_icon_theme(self):
        settings = os.path.join(self.home, b"config", b"gtk-4.0")
        os.makedirs(settings)
        with open(os.path.join(settings, b"settings.ini"), "w", encoding="utf-8") as file:
            file.write("[Settings]\ngtk-icon-theme-name=nowhere\n")
        process = self.start("mailto:a@b", DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere")
        wait_for(self.composed("view=cm&fs=1&to=a@b"), "the compose page")
        self.assertEqual(self.end(process, signal.SIGTERM), 0)

    def test_works_where_nothing_can_be_written(self):
        home = os.fsdecode(self.home)
        kinds = {"full": 'mount -t tmpfs -o size=64k none "$0"',
                 "read-only": 'mount --bind "$0" "$0" && mount -o remount,bind,ro "$0"'}
        if subprocess.run(["unshare", "-rm", "true"], check=False).returncode != 0:
            self.skipTest("no mounts of one's own here")
        for kind, mount in kinds.items():
            with self.subTest(kind):
                process = self.start("mailto:a@b?subject=" + kind,
                                     before=["unshare", "-rm", "sh", "-c", mount + ' && exec "$@"', home])
                wait_for(self.composed("view=cm&fs=1&to=a@b&su=" + kind), "the compose page")
                self.assertEqual(self.end(process, signal.SIGTERM), 0)

    def test_comes_to_rest_when_nobody_looks(self):
        process = self.start("--hidden")
        wait_for(lambda: any(r["path"] == "/_stage/beacon" and '"loaded"' in r["body"] for r in self.requests()), "a page")

        def sleeps():
            counts = {}
            for task in pathlib.Path("/proc", str(process.pid), "task").iterdir():
                try:
                    status = (task / "status").read_text()
                except (FileNotFoundError, ProcessLookupError):
                    continue  # it has ended
                counts[task.name] = int(status.partition("\nvoluntary_ctxt_switches:")[2].split()[0])
            return counts

        def rests():
            # Counted, not timed: on a busy machine it wakes up no more often. One a second is what a timer would take;
            # the engine looks at the memory every five seconds.
            before = sleeps()
            time.sleep(10)
            return sum(count - before.get(task, 0) for task, count in sleeps().items()) < 10
        wait_for(rests, "fewer than one wake-up a second")

    def test_says_what_it_is_and_what_it_does_not_know(self):
        for arguments, status, text in ((["--version"], 0, "WebKitGTK"), (["--help"], 0, "--profile NAME"),
                                        (["--nonsense"], 2, "--nonsense")):
            result = subprocess.run([PROGRAM, *arguments], env=self.environment | {b"DISPLAY": b""},
                                    capture_output=True, text=True, check=False)
            self.assertEqual(result.returncode, status)
            self.assertIn(text, result.stdout + result.stderr)

    def test_a_kill_at_any_moment_leaves_whole_profiles(self):
        """Each start switches the profile, which saves; the moment of the kill is random, its seed is told."""
        seed = random.randrange(2**32)
        moments = random.Random(seed)
        rounds = int(os.environ.get("TARN_KILLS", "5"))
        process = self.start("--hidden")
        wait_for(lambda: os.path.exists(self.profiles), "the first profiles")
        self.assertEqual(self.end(process, signal.SIGTERM), 0)
        names = None
        for turn in range(rounds):
            process = self.start("--hidden", "--profile", ("Work", "Personal")[turn % 2])
            time.sleep(moments.uniform(0, 1))  # the moment, not a wait
            self.end(process, signal.SIGKILL)
            with open(self.profiles, encoding="utf-8") as file:
                saved = json.load(file)
            now = [profile["name"] for profile in saved["profiles"]]
            self.assertEqual(now, names or now, f"seed {seed}, turn {turn}")
            names = now
        folder = os.path.dirname(self.profiles)
        self.assertFalse([name for name in os.listdir(folder) if b"unreadable" in name], f"seed {seed}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
