"""The program on the tour: its processes, what its pages asked for, and what it tells the desktop."""

import json
import os
import signal
import subprocess
from pathlib import Path
from xml.etree import ElementTree

from gi.repository import Gio

from waiting import expect, wait_for

APPLICATION_ID = "io.github.tarn.Tarn.Demo"
# As the kernel calls them: fifteen letters.
WEB_PROCESS, NETWORK_PROCESS = "WebKitWebProces", "WebKitNetworkPr"


class Demo:
    def __init__(self, program, output, browser_log):
        self.program = program
        self.output = (output / "tarn-demo.log").open("a")
        self.browser_log = browser_log
        self.request_log = output / "requests.jsonl"
        self.process = None
        self.badge = None
        self.progress = None
        self._entries = []
        self._read = 0
        self._first = 0
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        # There is a dock, so that the window's title need not do its work.
        Gio.bus_own_name_on_connection(self.bus, "com.canonical.Unity", Gio.BusNameOwnerFlags.NONE, None, None)
        self.bus.signal_subscribe(
            None,
            "com.canonical.Unity.LauncherEntry",
            "Update",
            None,
            None,
            Gio.DBusSignalFlags.NONE,
            lambda _bus, _sender, _path, _interface, _signal, parameters: self._entry_changed(*parameters.unpack()),
        )

    # Its processes

    def start(self, **environment):
        """As the first and only one. What it is asked from now on counts."""
        self.badge = None
        self.progress = None
        self.requests()
        self._first = len(self._entries)
        self.process = self._spawn(environment)

    def start_again(self):
        """While it runs: gives back how the second one ended."""
        second = self._spawn({})
        wait_for(lambda: second.poll() is not None, "the end of the second start")
        return second.returncode

    def _spawn(self, environment):
        environment = os.environ | {"TARN_STAGE_LOG": str(self.request_log)} | environment
        return subprocess.Popen([self.program], env=environment, stdout=self.output, stderr=subprocess.STDOUT)

    def runs(self):
        return self.process.poll() is None

    def must_run(self):
        expect(self.process.poll() is None, f"the program ended by itself, with {self.process.returncode}")
        return True

    def wait_for_end(self):
        wait_for(lambda: self.process.poll() is not None, "the end of the program")
        return self.process.returncode

    def end(self):
        """However it is."""
        if self.process and self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(30)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def engine_processes(self, kind):
        """Those of this program alone, by the beginning of their name."""
        parents = {}
        names = {}
        for folder in Path("/proc").glob("[0-9]*"):
            try:
                name, _, rest = (folder / "stat").read_text().partition("(")[2].rpartition(")")
            except (FileNotFoundError, ProcessLookupError):
                continue
            state, parent = rest.split()[:2]
            if state != "Z":
                parents[int(folder.name)] = int(parent)
                names[int(folder.name)] = name

        def descends(process):
            while process in parents:
                process = parents[process]
                if process == self.process.pid:
                    return True
            return False

        return {process for process, name in names.items() if name.startswith(kind) and descends(process)}

    def kill(self, kind):
        killed = self.engine_processes(kind)
        expect(killed, f"there was no {kind} to kill")
        for process in killed:
            os.kill(process, signal.SIGKILL)
        wait_for(lambda: not killed & self.engine_processes(kind), f"the end of {kind}")
        return killed

    # What its pages asked for

    def requests(self):
        """Since the start, in order."""
        if self.request_log.exists():
            with self.request_log.open() as log:
                log.seek(self._read)
                while (line := log.readline()).endswith("\n"):
                    self._entries.append(json.loads(line))
                    self._read = log.tell()
        return self._entries[self._first :]

    def page_requests(self, host, mark=0):
        """For the pages themselves, by somebody who is signed in, from a place in the log."""
        return [
            entry
            for entry in self.requests()[mark:]
            if entry["host"] == host and entry["method"] == "GET" and entry["path"] == "/" and entry["account"]
        ]

    def sign_ins(self):
        return [entry for entry in self.requests() if entry["path"] == "/ServiceLogin"]

    def beacons(self, host, mark=0):
        """What the pages of a host saw of themselves, from a place in the log. "account" is who was signed in."""
        found = []
        for entry in self.requests()[mark:]:
            if entry["path"] == "/_stage/beacon" and entry["host"] == host:
                beacon = json.loads(entry["body"])
                if beacon["top"]:
                    found.append(beacon | {"account": entry["account"]})
        return found

    # What it tells the desktop

    def _entry_changed(self, entry, state):
        if entry == f"application://{APPLICATION_ID}.desktop":
            self.badge = state["count"] if state["count-visible"] else None
            self.progress = state["progress"] if state["progress-visible"] else None

    def commands(self):
        """The window's: what can be done now, and the state of those that have one."""
        # The number of the window changes each time it is shown again.
        windows = f"/{APPLICATION_ID.replace('.', '/')}/window"
        tree = self._call(windows, "org.freedesktop.DBus.Introspectable", "Introspect")
        numbers = [node.get("name") for node in ElementTree.fromstring(tree).iter("node") if node.get("name")]
        actions = self._call(f"{windows}/{numbers[-1]}", "org.gtk.Actions", "DescribeAll")
        enabled = {name for name, (can_be_done, _type, _state) in actions.items() if can_be_done}
        return enabled, {name: state[0] for name, (_enabled, _type, state) in actions.items() if state}

    def _call(self, path, interface, method):
        return self.bus.call_sync(APPLICATION_ID, path, interface, method, None, None, 0, 10_000, None).unpack()[0]

    def handed_over(self):
        """The addresses that were given to the default browser."""
        return self.browser_log.read_text().split() if self.browser_log.exists() else []
