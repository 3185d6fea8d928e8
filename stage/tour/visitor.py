"""A visitor to the demo: starts it, uses mouse and keys, and sees what a user would see."""

import os
import re
import shlex
from pathlib import Path

from accessibility import Accessibility
from demo import APPLICATION_ID, Demo
from desktop import Desktop, Rect, parse_colour, same_colour
from waiting import expect, wait_for

# In the order of the sidebar, which is that of their keys.
APPS = ("Mail", "Calendar", "Drive", "Gemini", "Keep", "Tasks", "Contacts")
# Those with an icon are of another kind.
ITEMS = ("menu item", "menu item radio")
UNREAD_DOT = parse_colour("#e01b24")


def host(app):
    return f"{app.lower()}.google.com"


class PageColours:
    """By which a page shows whose it is: a mark for the service, a line at the top for the person."""

    def __init__(self):
        sheet = (Path(__file__).parent.parent / "services/shared/stage.css").read_text()
        light, dark = sheet.split("@media (prefers-color-scheme: dark)", 1)
        self.schemes = {"light": self._read(light), "dark": self._read(dark)}

    def _read(self, sheet):
        rule = re.compile(r'\[data-(app|account)="(\w+)"\] \{ --\w+: (#[0-9a-f]{6})')
        return {(kind, name): parse_colour(colour) for kind, name, colour in rule.findall(sheet)}

    def of(self, scheme, app, person):
        colours = self.schemes[scheme]
        return colours["app", app.lower()], colours["account", person]


class Visitor:
    def __init__(self, program, output):
        home = Path(os.environ["XDG_DATA_HOME"]).parent
        self.colours = PageColours()
        self.scheme = "light"
        self.desktop = Desktop()
        self.widgets = Accessibility((home / "accessibility.log").open("w"))
        self.demo = Demo(program, output, self._make_browser(home))
        self.begin(0, "")

    def begin(self, mark, person):
        """The pages begin anew: where the log is then, and who is signed in on them."""
        self.mark, self.person = mark, person
        # The apps that have been in the window since.
        self.opened = set()

    def close(self):
        self.demo.end()
        self.desktop.close()
        self.widgets.close()

    @staticmethod
    def _make_browser(home):
        """A default browser that writes down what it is to open."""
        log = home / "browser.log"
        browser = home / "browser"
        browser.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$1\" >>{shlex.quote(str(log))}\n")
        browser.chmod(0o755)
        applications = Path(os.environ["XDG_DATA_HOME"]) / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        entry = f"[Desktop Entry]\nType=Application\nName=Browser\nExec={browser} %u\nMimeType=x-scheme-handler/https;\n"
        (applications / "tour-browser.desktop").write_text(entry)
        configuration = Path(os.environ["XDG_CONFIG_HOME"])
        configuration.mkdir(parents=True, exist_ok=True)
        defaults = "[Default Applications]\nx-scheme-handler/https=tour-browser.desktop\n"
        (configuration / "mimeapps.list").write_text(defaults)
        return log

    # Eyes

    def wait(self, look, what):
        return wait_for(lambda: self.demo.must_run() and look(), what)

    def window(self, title="Tarn"):
        for window in self.desktop.windows(APPLICATION_ID):
            # Menus of the main window are called as it is.
            if window.title == title and (window.has_commands or title != "Tarn"):
                return window
        raise LookupError(f'no window "{title}"')

    def inside(self, title="Tarn"):
        """The window without the frame that a window manager without shadows leaves around it, on the screen."""
        outer, inner = self.window(title).rect, self.widgets.window(title).rect
        return outer.inset((outer.width - inner.width) // 2)

    def names(self, title, role):
        """Of a window's widgets, as a screen reader is told them, in their order."""
        return [widget.name for widget in self.widgets.window(title).below(role)]

    def buttons(self):
        return list(self.widgets.window("Tarn").below("button"))

    def place(self, role, name):
        """Of a widget that is in no menu, on the screen."""
        for widget in self.widgets.window("Tarn").below(role):
            if widget.name.startswith(name):
                return widget.rect.moved(*self.inside()[:2])
        raise LookupError(f'no {role} "{name}"')

    def last_button(self, title, name):
        """Where it is on the screen."""
        buttons = [button for button in self.widgets.window(title).below("button") if button.name == name]
        return buttons[-1].rect.moved(*self.inside(title)[:2]) if buttons else None

    def page(self):
        # Of what holds the views: those that are not in the window do not know their place.
        for holder in self.widgets.window("Tarn").holders_of("WebKitWebView"):
            return holder.rect.moved(*self.inside()[:2])
        raise LookupError("no page")

    def other_windows(self):
        """Popups and dialogs."""
        return [window for window in self.desktop.windows(APPLICATION_ID) if window.title not in ("Tarn", "")]

    def other_window(self, title):
        """One that has the keyboard."""
        look = lambda: [w for w in self.other_windows() if w.title.startswith(title) and self.desktop.has_focus(w)]
        return self.wait(look, f'a window "{title}" with the keyboard')[0]

    def open_menu(self):
        """The names of the open menu's items, with where they are on the screen."""
        popups = [window for window in self.desktop.windows(APPLICATION_ID) if not window.has_commands]
        for menu in self.widgets.window("Tarn").menus() if popups else ():
            for popup in popups:
                if menu.rect[2:] == popup.rect[2:]:
                    x, y = popup.rect.x - menu.rect.x, popup.rect.y - menu.rect.y
                    return {item.name: item.rect.moved(x, y) for item in menu.below(ITEMS)}
        return {}

    def shows(self, app):
        """Whether this is what is painted: the page of the app, signed in as who should be."""
        page = self.page()
        picture = self.desktop.picture(Rect(page.x, page.y, page.width, 60))
        mark, line = self.colours.of(self.scheme, app, self.person)
        return same_colour(picture.colour(page.x + 30, page.y + 29), mark) and same_colour(
            picture.colour(page.x + page.width // 2, page.y + 1), line
        )

    def dot(self):
        button = self.place("button", "Mail")
        x, y = button.x + button.width - 8, button.y + 8
        return same_colour(self.desktop.picture(Rect(x, y, 1, 1)).colour(x, y), UNREAD_DOT)

    def beacons(self, app, event=None):
        return [
            beacon
            for beacon in self.demo.beacons(host(app), self.mark)
            if beacon["account"] == self.person and event in (None, beacon["event"])
        ]

    def app_page(self, app):
        """What the app's page told when it was loaded; its popups tell the same of themselves."""
        return [beacon for beacon in self.beacons(app, "loaded") if "/_stage/" not in beacon["href"]][-1]

    def see_app(self, app):
        loaded = self.wait(lambda: self.beacons(app, "loaded"), f"the page of {app}")[-1]
        command = f"show-app-{APPS.index(app) + 1}"
        self.wait(lambda: self.demo.commands()[1][command], f"{app} as the chosen app")
        self.wait(lambda: self.shows(app), f"{app} in the window, for {self.person}")
        self.opened.add(app)
        return loaded

    def see_mail(self, unread):
        """And what the sidebar and the dock tell of it. Gives back the address of who is signed in."""
        title = self.see_app("Mail")["title"]
        inbox = re.fullmatch(r"Inbox(?: \(\d+\))? - (\S+) - Mail", title)
        expect(inbox, f'no inbox, but "{title}"')
        self.wait(lambda: self.demo.badge == unread, f"a badge of {unread} on the dock")
        self.wait(self.dot, "the unread dot on Mail")
        return inbox[1]

    def loads(self, app):
        return len(self.demo.page_requests(host(app), self.mark))

    def settled_picture(self, rect):
        self.desktop.put_pointer_away()
        return self.desktop.settled_picture(rect)

    # Hands

    def ready(self, title="Tarn"):
        """A hand waits until the window listens."""
        self.wait(lambda: self.desktop.has_focus(self.window(title)), f'the window "{title}" to have the keyboard')

    def press(self, keys, title="Tarn"):
        self.ready(title)
        self.desktop.press(keys)

    def click(self, rect, key=None):
        self.desktop.click(rect.centre, key)
        self.desktop.put_pointer_away()

    def click_on(self, role, name):
        self.click(self.wait(lambda: self.place(role, name), f'a {role} "{name}"'))

    def click_in_page(self, beacon, thing, key=None, down=None):
        """On what the page has told the place of; at its middle, or so far below its top."""
        self.ready()
        self._click_in(self.wait(self.page, "a page"), beacon, thing, key, down)

    def click_in_popup(self, window, beacon, thing):
        # What is not page is at the top, but for the edge around all of it.
        width, height = beacon["size"]
        edge = (window.rect.width - width) // 2
        page = window.rect.moved(edge, window.rect.height - height - edge)
        self._click_in(page, beacon, thing)

    def _click_in(self, page, beacon, thing, key=None, down=None):
        rect = Rect(*beacon["places"][thing]).moved(page.x, page.y)
        self.click(rect if down is None else rect._replace(y=rect.y + down, height=1), key)

    def open_profile_menu(self, person):
        """To change to the profile that this person is signed in on."""
        self.begin(len(self.demo.requests()), person)
        self.click_on("button", "Profile:")
        return self.wait(self.open_menu, "the menu of profiles")

    def choose(self, item):
        self.click(self.wait(lambda: self.open_menu().get(item), f'"{item}" in the open menu'))
        self.wait(lambda: not self.open_menu(), "the menu to close")

    def start(self, person, **environment):
        self.begin(0, person)
        self.demo.start(**environment)
        return self.wait(self.window, "a window")

    def quit(self):
        self.press("ctrl+q")
        status = self.demo.wait_for_end()
        expect(status == 0, f"the program ended with {status}")
