"""The widgets of the application by their role and name, as a screen reader is told them."""

import subprocess
from functools import cached_property

from gi.repository import Gio, GLib

from desktop import Rect
from waiting import wait_for

ACCESSIBLE = "org.a11y.atspi.Accessible"
COMPONENT = "org.a11y.atspi.Component"
PROPERTIES = "org.freedesktop.DBus.Properties"
WINDOW_COORDINATES = 1
TIMEOUT = 10_000  # milliseconds
# The desktop starts no services by itself.
LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi-bus-launcher")


# With nothing in them that is looked for, but a menu that hangs on them.
CLOSED = ("button", "image", "label", "scroll bar", "menu item")


class Widget:
    """Asks only for what is looked at: each question waits for the program to have time for it."""

    def __init__(self, call, reference):
        self._call = lambda *question: call(reference, *question)
        self._widget = lambda child: Widget(call, child)

    @cached_property
    def role(self):
        return self._call(ACCESSIBLE, "GetRoleName")

    @cached_property
    def name(self):
        return self._call(PROPERTIES, "Get", GLib.Variant("(ss)", (ACCESSIBLE, "Name")))

    @cached_property
    def rect(self):
        """Relative to the window. In a menu it is so too, as if the menu began where the widget does that it is of."""
        return Rect(*self._call(COMPONENT, "GetExtents", GLib.Variant("(u)", (WINDOW_COORDINATES,))))

    @cached_property
    def children(self):
        return [self._widget(child) for child in self._call(ACCESSIBLE, "GetChildren")]

    def below(self, role, closed=CLOSED):
        """Those of a role, or of several, that are in this widget, but not in one another."""
        for child in self.children:
            if child.role.endswith(role):
                yield child
            elif child.role not in closed:
                yield from child.below(role, closed)

    def holders_of(self, name):
        """The widgets that have a direct child of this name."""
        for child in self.children:
            if child.role not in CLOSED:
                if child.name == name:
                    yield self
                yield from child.holders_of(name)

    def menus(self):
        return self.below("menu", closed=())


class Accessibility:
    def __init__(self, log):
        for launcher in LAUNCHERS:
            try:
                self.launcher = subprocess.Popen([launcher], stdout=log, stderr=log)
                break
            except FileNotFoundError:
                pass
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        ask = lambda: session.call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, TIMEOUT, None
        ).unpack()[0]
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            wait_for(ask, "the accessibility bus"),
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION,
            None,
            None,
        )

    def close(self):
        self.bus.close_sync()
        self.launcher.terminate()
        self.launcher.wait()

    def window(self, title):
        root = Widget(self._call, ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"))
        for application in root.children:
            for window in application.children:
                if window.name == title:
                    return window
        raise LookupError(f'no window "{title}"')

    def _call(self, reference, interface, method, arguments=None):
        name, path = reference
        return self.bus.call_sync(name, path, interface, method, arguments, None, 0, TIMEOUT, None).unpack()[0]
