#!/usr/bin/env python3
"""How the real program draws, and what it makes of starts that show nothing. safe_rendering.py TARN-DEMO; run it by
scripts/with-desktop."""

import os
import pathlib
import signal
import socket
import subprocess
import unittest

from process_test import PATIENCE, PROGRAM, ProcessTest, wait_for

SAFE = {"GDK_DEBUG": "gl-disable", "GSK_RENDERER": "cairo", "LIBGL_ALWAYS_SOFTWARE": "1",
        "WEBKIT_DISABLE_COMPOSITING_MODE": "1", "WEBKIT_DISABLE_DMABUF_RENDERER": "1"}
CONTRARY = {"WEBKIT_FORCE_COMPOSITING_MODE": "1", "WEBKIT_FORCE_DMABUF_RENDERER": "1"}


class SafeRendering(ProcessTest):
    def setUp(self):
        super().setUp()
        for name in (*SAFE, *CONTRARY):
            self.environment.pop(os.fsencode(name), None)
        # Services that never answer.
        self.silence = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(self.silence.close)
        self.settings = pathlib.Path(os.fsdecode(self.home), "state", "tarn-demo", "config", "Tarn", "settings.ini")

    def start_and_wait(self, *arguments, **changes):
        before = len(self.requests())
        process = self.start(*arguments, **changes)
        self.wait_for_page(before)
        return process

    def wait_for_page(self, before):
        wait_for(lambda: any(r["path"] == "/_stage/beacon" and '"loaded"' in r["body"]
                             for r in self.requests()[before:]), "a page")

    def start_blank(self):
        """Ends before it has shown anything."""
        host, port = self.silence.getsockname()
        process = self.start(TARN_STAGE_PROXY=f"http://{host}:{port}")
        self.silence.settimeout(PATIENCE)
        # The engine asks for a page: everything has started.
        self.silence.accept()[0].close()
        self.kill(process)

    def kill(self, process):
        self.end(process, signal.SIGKILL)
        self.wait_for_rest(process)

    def quit(self, process):
        self.assertEqual(self.end(process, signal.SIGTERM), 0)
        self.wait_for_rest(process)

    def wait_for_rest(self, process):
        wait_for(lambda: not self.session(process.pid), "the end of its processes")

    def drawing(self, process, kind="WebKitWebProces"):
        """What a page's process was told about drawing."""
        def environment():
            for pid in self.session(process.pid):
                folder = pathlib.Path("/proc", pid)
                try:
                    if (folder / "comm").read_text().strip() != kind:
                        continue
                    lines = (folder / "environ").read_bytes().split(b"\0")
                except (FileNotFoundError, PermissionError, ProcessLookupError):
                    continue
                if lines == [b""]:
                    continue  # it has ended
                variables = dict(os.fsdecode(line).split("=", 1) for line in lines if b"=" in line)
                return {name: value for name, value in variables.items() if name in SAFE | CONTRARY}, True
            return None
        return wait_for(environment, "a process of the engine")[0]

    def titles(self, process):
        """Of its windows that are to be seen."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(process.pid)],
                               capture_output=True, text=True, check=False)
        return [subprocess.run(["xdotool", "getwindowname", window], capture_output=True, text=True,
                               check=False).stdout.strip() for window in found.stdout.split()]

    def press(self, process, title, key):
        def active():
            name = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], capture_output=True, text=True,
                                  check=False).stdout.strip()
            return name == title
        wait_for(active, f"{title}, of {self.titles(process)}")
        subprocess.run(["xdotool", "key", key], check=True)
        wait_for(lambda: title not in self.titles(process), "the end of " + title)

    def test_the_option_reaches_the_pages_unless_the_user_says_otherwise(self):
        process = self.start_and_wait("--safe-rendering")
        self.assertEqual(self.drawing(process), SAFE)
        second = subprocess.run([PROGRAM, "--safe-rendering"], env=self.environment, capture_output=True, text=True,
                                check=True, timeout=PATIENCE)
        self.assertIn("next full start", second.stderr)
        self.quit(process)
        process = self.start_and_wait("--safe-rendering", **CONTRARY, LIBGL_ALWAYS_SOFTWARE="0", GSK_RENDERER="broadway")
        self.assertEqual(self.drawing(process),
                         CONTRARY | {"LIBGL_ALWAYS_SOFTWARE": "0", "GSK_RENDERER": "broadway"})
        self.quit(process)
        self.assertFalse(self.settings.exists(), "it holds for one start")

    def test_a_blank_start_leads_to_an_offer_and_two_to_safe_rendering(self):
        offer, begun = "The last start showed no page", "Safe rendering is on"
        self.start_blank()
        process = self.start_and_wait()
        self.assertNotIn("LIBGL_ALWAYS_SOFTWARE", self.drawing(process))
        self.press(process, offer, "Escape")
        self.kill(process)

        # What has shown a page was no blank start, however it ended.
        process = self.start_and_wait()
        wait_for(lambda: self.titles(process), "a window")
        self.assertNotIn(offer, self.titles(process))
        self.quit(process)

        self.start_blank()
        self.start_blank()
        process = self.start_and_wait()
        self.assertEqual(self.drawing(process), SAFE)
        self.press(process, begun, "Escape")
        self.quit(process)
        self.assertFalse(self.settings.exists(), "only this time")

        self.start_blank()
        process = self.start_and_wait()
        before = len(self.requests())
        self.press(process, offer, "Return")
        self.wait_for_page(before)
        self.assertIsNone(process.poll(), "it goes on as the same process")
        wait_for(lambda: self.drawing(process) == SAFE, "the new beginning's pages")
        self.assertIn("SafeRendering=true", self.settings.read_text())
        self.quit(process)
        process = self.start_and_wait()
        self.assertEqual(self.drawing(process), SAFE)
        self.assertEqual([title for title in self.titles(process) if title in (offer, begun)], [])
        self.quit(process)


if __name__ == "__main__":
    unittest.main(verbosity=2)
