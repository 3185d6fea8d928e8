"""Hands and eyes on the X screen: mouse, keys, windows, pictures."""

import subprocess
from typing import NamedTuple

from waiting import wait_for


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, timeout=120).stdout


class Rect(NamedTuple):
    x: int
    y: int
    width: int
    height: int

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def moved(self, x, y):
        return Rect(self.x + x, self.y + y, self.width, self.height)

    def inset(self, by):
        return Rect(self.x + by, self.y + by, self.width - 2 * by, self.height - 2 * by)


class Window(NamedTuple):
    id: str
    rect: Rect
    title: str
    # Menus and tooltips have no commands of their own.
    has_commands: bool


class Picture:
    """The screen, or a part of it, as it was at a moment."""

    def __init__(self, pixels, rect):
        self.pixels = pixels
        self.rect = rect

    def colour(self, x, y):
        at = 3 * ((y - self.rect.y) * self.rect.width + x - self.rect.x)
        return tuple(self.pixels[at : at + 3])

    def save(self, file):
        size = f"{self.rect.width}x{self.rect.height}"
        subprocess.run(["convert", "-size", size, "-depth", "8", "rgb:-", str(file)], input=self.pixels, check=True)


def parse_colour(text):
    return tuple(bytes.fromhex(text.removeprefix("#")))


def same_colour(one, other):
    return len(one) == len(other) and all(abs(a - b) <= 4 for a, b in zip(one, other))


class Desktop:
    def __init__(self):
        self.daemon = None
        managed = lambda: b"window id" in run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")
        wait_for(managed, "a window manager")
        width, height = run("xdotool", "getdisplaygeometry").split()
        self.screen = Rect(0, 0, int(width), int(height))
        self.put_pointer_away()

    # Hands

    def put_pointer_away(self):
        """So that it hovers over nothing."""
        run("xdotool", "mousemove", str(self.screen.width - 1), str(self.screen.height - 1))

    def click(self, place, key=None):
        x, y = place
        press = ["click", "1"] if key is None else ["keydown", key, "click", "1", "keyup", key]
        run("xdotool", "mousemove", str(x), str(y), *press)

    def press(self, keys):
        run("xdotool", "key", "--clearmodifiers", keys)

    def type(self, text):
        run("xdotool", "type", "--clearmodifiers", "--delay", "30", text)

    def activate(self, window):
        run("xdotool", "windowactivate", window.id)

    def start_notification_daemon(self, folder):
        configuration = folder / "dunstrc"
        # As it comes, its left button only puts away.
        configuration.write_text("[global]\nmouse_left_click = do_action, close_current\n[urgency_normal]\ntimeout = 0\n")
        self.daemon = subprocess.Popen(
            ["dunst", "-conf", str(configuration)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
        )

    def notifications(self):
        return self.windows("Dunst")

    def click_notification(self):
        self.click(self.notifications()[0].rect.centre)
        self.put_pointer_away()
        wait_for(lambda: not self.notifications(), "the notification to go")

    def close(self):
        if self.daemon:
            self.daemon.terminate()
            self.daemon.wait()

    def resize(self, window, width, height):
        run("xdotool", "windowsize", window.id, str(width), str(height))

    # Eyes

    def windows(self, window_class):
        """Those that are to be seen."""
        search = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", window_class], capture_output=True, text=True, timeout=120
        )
        # It fails when it finds nothing.
        return [self._window(window) for window in search.stdout.split()]

    def _window(self, window):
        shell = run("xdotool", "getwindowgeometry", "--shell", window).decode()
        values = dict(line.split("=") for line in shell.split())
        names = ["_NET_WM_NAME", "_GTK_WINDOW_OBJECT_PATH"]
        properties = run("xprop", "-notype", "-id", window, *names).decode().splitlines()
        title, path = (line.partition(" = ")[2].strip('"') for line in properties)
        return Window(window, Rect(*(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))), title, bool(path))

    def has_focus(self, window):
        return run("xdotool", "getwindowfocus").decode().strip() == window.id

    def picture(self, rect=None):
        rect = rect or self.screen
        area = f"{rect.width}x{rect.height}+{rect.x}+{rect.y}"
        return Picture(run("import", "-window", "root", "-crop", area, "-depth", "8", "rgb:-"), rect)

    def settled_picture(self, rect):
        """Of what no longer moves. A caret that blinks may do so."""
        before = self.picture(rect)
        for _ in range(20):
            now = self.picture(rect)
            if now.pixels == before.pixels:
                break
            before = now
        return now
