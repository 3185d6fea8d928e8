"""The programs that are compared: how each is started, shown its apps and ended."""

import os
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

from gi.repository import Gio, GLib

APPS = ("mail", "calendar", "drive", "gemini", "keep", "tasks", "contacts")
# What Tarn chooses by itself on a machine without a GPU.
SOFTWARE_RENDERERS = {"GSK_RENDERER": "cairo", "WEBKIT_DISABLE_DMABUF_RENDERER": "1", "GDK_DEBUG": "gl-disable"}


def address(app):
    return f"https://{app}.google.com/"


class Program:
    name = ""
    # Whether its own process can be told from the engine's, and keys switch between its apps.
    has_keys = True
    has_profiles = False

    def __init__(self, build, proxy):
        self.build = build
        self.proxy = proxy
        self.home = Path(tempfile.mkdtemp(prefix="tarn-bench-"))
        self.process = None

    def forget(self):
        """The next start is the first one."""
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()

    def start(self):
        self.process = self.spawn()

    def spawn(self, *arguments, **environment):
        return subprocess.Popen(
            self.command(*arguments),
            env=os.environ | environment,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
        )

    def end(self):
        self.process.terminate()
        try:
            self.process.wait(20)
        except subprocess.TimeoutExpired:
            pass
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()


class Tarn(Program):
    name = "Tarn"
    has_profiles = True
    bus_name = "io.github.tarn.Tarn.Demo"

    def command(self):
        return [self.build / "stage/tarn-demo"]

    def start(self):
        self.process = self.spawn(TARN_STAGE_PROXY=self.proxy, XDG_STATE_HOME=str(self.home))

    def launch(self, profile="", urls=()):
        """As a second start with --profile or links does, without the time that the second program takes to start."""
        words = [word.encode() + b"\0" for word in (profile, "", *urls)]
        request = GLib.Variant("(bbayayaay)", (True, False, words[0], words[1], words[2:]))
        Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            self.bus_name,
            "/" + self.bus_name.replace(".", "/"),
            "org.gtk.Actions",
            "Activate",
            GLib.Variant("(sava{sv})", ("launch", [request], {})),
            None,
            Gio.DBusCallFlags.NONE,
            -1,
            None,
        )


class Floor(Program):
    name = "floor"

    def command(self):
        return [self.build / "bench/floor", self.proxy, self.home, *map(address, APPS)]

    def start(self):
        self.process = self.spawn(**SOFTWARE_RENDERERS)


class Chromium(Program):
    name = "Chromium"
    has_keys = False

    def command(self, app="mail"):
        options = ["--no-first-run", "--no-default-browser-check", "--ignore-certificate-errors", "--password-store=basic"]
        # It refuses to run as root otherwise. It is the faster and smaller for it.
        if os.geteuid() == 0:
            options.append("--no-sandbox")
        return [
            "chromium",
            *options,
            f"--user-data-dir={self.home}",
            f"--proxy-server={self.proxy}",
            "--window-size=1300,900",
            f"--app={address(app)}",
        ]

    def open(self, app):
        self.spawn(app).wait()
