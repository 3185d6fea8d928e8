"""A guided tour of the demo: it drives the real program with mouse and keys, and looks at each step whether it came
true. With --kill, processes of the engine are killed after each step, and the next one begins when the window shows
again what it did. Usage: tour.py [--kill web|network] DEMO OUTPUT, on a desktop of its own."""

import argparse
import os
import re
import shutil
import sys
import traceback
from pathlib import Path

from crashes import Crashes
from demo import APPLICATION_ID, NETWORK_PROCESS, WEB_PROCESS
from desktop import Rect
from visitor import APPS, Visitor
from waiting import NotTrue, expect

FIRST, SECOND, THIRD = "Personal", "Work", "A client"
# What can be done with a profile in the settings.
OTHER_ROW = ("Switch", "Edit…", "Delete profile")
ACTIVE_ROW = ("Edit…", "Delete profile")
NEWS = "https://news.example/story"
KINDS = {"web": WEB_PROCESS, "network": NETWORK_PROCESS}
OUR_FILES = ("[0-9][0-9]-*.png", "failed.png", "tarn-demo.log", "requests.jsonl")


class Report:
    def __init__(self, output):
        self.output = output
        self.steps = 0
        self.pictures = 0

    def step(self, title):
        self.steps += 1
        self._say(f"{self.steps}. {title}")

    def did(self, text):
        self._say(f"   did: {text}")

    def saw(self, text):
        self._say(f"   saw: {text}")

    def picture(self, picture, name):
        self.pictures += 1
        file = self.output / f"{self.pictures:02}-{name}.png"
        picture.save(file)
        self._say(f"   screenshot: {file}")

    def _say(self, line):
        print(line, flush=True)


class Tour(Visitor):
    def __init__(self, program, output, report):
        super().__init__(program, output)
        self.program = program
        self.report = report
        self.crashes = Crashes(self)

    def photograph(self, name, rect=None):
        self.report.picture(self.settled_picture(rect or self.inside()), name)

    # Steps

    def see_inbox(self, unread):
        address = self.see_mail(unread)
        self.report.saw(f"Mail for {address}; {unread} unread: a red dot on Mail, {unread} on the dock's badge")

    def opens(self):
        window = self.start("ada")
        self.report.did(f"started {self.program}")
        self.report.saw(f'a window "{window.title}", {window.rect.width} x {window.rect.height}')
        self.see_inbox(3)
        names = [button.name for button in self.buttons()]
        expect(tuple(names[: len(APPS)]) == APPS, f"not the seven apps in the sidebar, but {', '.join(names)}")
        self.report.saw(f"in the sidebar: {', '.join(APPS)}")
        self.wait(lambda: self.beacons("Mail", "promotion-dismissed"), "the offer of another browser to be declined")
        self.report.saw("the page's offer to switch to another browser declined without a question")
        self.photograph("mail")

    def reads(self):
        self.click_in_page(self.app_page("Mail"), "main", down=70)
        self.report.did("clicked on the first conversation")
        self.see_inbox(2)
        self.photograph("conversation")
        self.press("ctrl+bracketleft")
        self.wait(lambda: "go-forward" in self.demo.commands()[0], "a way forward after going back")
        self.report.did("pressed Ctrl+[")
        self.report.saw("back in the inbox, and Forward to be had in the View menu")

    def clicks_calendar(self):
        self.click_on("button", "Calendar")
        self.report.did("clicked on Calendar in the sidebar")
        self.see_app("Calendar")
        self.report.saw("the page of Calendar, signed in without a question")
        self.photograph("calendar")

    def presses_drive(self):
        self.press("ctrl+3")
        self.report.did("pressed Ctrl+3")
        self.see_app("Drive")
        self.report.saw("the page of Drive")
        self.photograph("drive")

    def opens_menu(self):
        self.click_on("menu item", "View")
        menu = self.wait(self.open_menu, "an open menu")
        self.report.did("clicked on View in the menu bar")
        expect(tuple(menu)[: len(APPS)] == APPS, f"not the seven apps in the menu, but {', '.join(menu)}")
        self.report.saw(f"a menu: {', '.join(menu)}")
        self.photograph("view-menu")
        self.choose("Keep")
        self.report.did("chose Keep")
        self.see_app("Keep")
        self.report.saw("the page of Keep")

    def keeps_draft(self):
        before, after = "Ask Ines about the 14th, and bring", " the red torch"
        loads = self.loads("Keep")
        self.click_in_page(self.app_page("Keep"), "note")
        self.desktop.type(before)
        self.report.did(f'typed "{before}" into a note')
        self.press("ctrl+1")
        self.see_app("Mail")
        self.press("ctrl+5")
        self.see_app("Keep")
        self.report.did("pressed Ctrl+1, and in Mail Ctrl+5")
        draft = lambda text: lambda: any(beacon["draft"]["text"] == text for beacon in self.beacons("Keep"))
        self.wait(draft(before), "the note with its text")
        self.ready()
        self.desktop.type(after)
        self.report.did("typed on where the caret was, and changed to Mail and back once more")
        self.press("ctrl+1")
        self.wait(draft(before + after), "the note with all of its text")
        self.press("ctrl+5")
        self.see_app("Keep")
        expect(self.loads("Keep") == loads, "the page was loaded again")
        self.report.saw(f'"{before}{after}" in the note, and no second request for the page')
        self.photograph("draft")

    def visits_all(self):
        for app in ("Gemini", "Tasks", "Contacts"):
            key = APPS.index(app) + 1
            self.press(f"ctrl+{key}")
            self.see_app(app)
            self.report.did(f"pressed Ctrl+{key}")
            self.report.saw(f"the page of {app}")
            self.photograph(app.lower())
        loads = {app: self.loads(app) for app in APPS}
        expect(all(count == 1 for count in loads.values()), f"not each app loaded once: {loads}")
        self.report.saw("all seven apps loaded, each of them once")
        self.press("ctrl+1")
        self.see_app("Mail")

    def changes_profile(self):
        menu = self.open_profile_menu("bo")
        self.report.did("clicked on the profile button")
        self.report.saw(f"a menu: {', '.join(menu)}")
        # It sticks out into the frame.
        self.photograph("profile-menu", self.window().rect)
        self.choose(SECOND)
        self.report.did(f"chose {SECOND}")
        self.see_inbox(12)
        self.photograph("second-profile")

    def changes_back(self):
        before = len(self.demo.sign_ins())
        self.open_profile_menu("ada")
        self.choose(FIRST)
        self.report.did(f"clicked on the profile button and chose {FIRST}")
        self.see_inbox(2)
        expect(len(self.demo.sign_ins()) == before, "a sign-in was asked for again")
        self.report.saw("no new sign-in")

    def hands_over_links(self):
        loaded = self.app_page("Mail")
        for what, link, key in (
            ("clicked with Ctrl on a link to another site", "link-foreign", "ctrl"),
            ("clicked on it without Ctrl", "link-foreign", None),
            ("clicked on a link that wraps the same address", "link-wrapped", None),
        ):
            before = len(self.demo.handed_over())
            self.click_in_page(loaded, link, key)
            self.report.did(what)
            self.wait(lambda: len(self.demo.handed_over()) > before, "the default browser to be asked")
            given = self.demo.handed_over()[before:]
            expect(given == [NEWS], f"the default browser was given {given}")
            self.report.saw(f"the default browser was given {NEWS}")
        asked = any(entry["host"] == "news.example" for entry in self.demo.requests())
        expect(self.shows("Mail") and not asked, "Mail was not left alone")
        self.report.saw("Mail still in its place, and nothing asked of news.example by Tarn itself")

    def recovers(self):
        self.press("ctrl+5")
        self.see_app("Keep")
        killed, apps = self.crashes.strike(WEB_PROCESS)
        expect(apps == ["Mail", "Keep"], f"not Mail and Keep were open, but {apps}")
        self.report.did(f"killed all web processes ({killed}) with SIGKILL, Keep in the window")
        self.report.saw("Keep and Mail loaded again by themselves, in new processes")
        self.photograph("recovered")

    def closes_and_opens(self):
        self.click_on("button", "Close")
        self.report.did("clicked on the window's close button")
        self.wait(lambda: not self.desktop.windows(APPLICATION_ID), "no window")
        self.report.saw("no window, and the program still running")
        status = self.demo.start_again()
        expect(status == 0, f"the second start ended with {status}")
        self.report.did("started the program a second time")
        self.wait(self.window, "the window")
        loads = self.loads("Mail")
        self.press("ctrl+1")
        self.see_app("Mail")
        expect(self.loads("Mail") == loads, "the page was loaded again")
        self.report.saw("the second start ended at once; the window is back, and Ctrl+1 shows Mail without loading it")

    def restarts(self):
        size = (1400, 1000)
        self.desktop.resize(self.window(), *size)
        self.wait(lambda: self.window().rect[2:] == size, "the new size")
        self.quit()
        self.report.did("made the window 1400 x 1000, and pressed Ctrl+Q")
        self.start("ada")
        self.report.did("started the program")
        self.wait(lambda: self.window().rect[2:] == size, "a window of the same size")
        self.report.saw("a window of 1400 x 1000")
        self.see_inbox(3)
        self.open_profile_menu("bo")
        self.choose(SECOND)
        self.report.did(f"chose {SECOND} in the profile menu")
        self.see_inbox(12)
        expect(not self.demo.sign_ins(), "a sign-in was asked for again")
        self.report.saw("both still signed in: nothing asked for a sign-in")

    def asks_where_links_open(self):
        loaded = self.app_page("Mail")
        question, link = "Where would you like to open this link?", "https://calendar.google.com/calendar/u/0/r"

        def ask():
            self.click_in_page(loaded, "link-calendar")
            self.other_window(question)

        ask()
        self.report.did("clicked on a link into Calendar")
        self.report.saw(f'"{question}"')
        self.photograph("link-question")
        self.desktop.press("Escape")
        self.wait(lambda: not self.other_windows(), "no question")
        self.report.did("pressed Escape: nothing opened")

        before = len(self.demo.handed_over())
        ask()
        self.desktop.press("alt+d")
        self.wait(lambda: self.demo.handed_over()[before:] == [link], "the default browser to be given the link")
        self.report.did("asked again, and chose Default Browser: it was given the link")

        ask()
        self.desktop.press("Return")
        self.other_window("Calendar")
        self.wait(lambda: self.beacons("Calendar", "loaded"), "the page of Calendar")
        self.report.did("asked again, and pressed Return")
        self.report.saw("Calendar in a window of its own, signed in")
        self.photograph("new-window", self.desktop.screen)
        self.desktop.press("ctrl+w")
        self.wait(lambda: not self.other_windows(), "the window to close")
        self.wait(lambda: self.shows("Mail"), "Mail, left alone")

    def signs_in_by_popup(self):
        self.click_in_page(self.app_page("Mail"), "open-sign-in")
        self.report.did("clicked on a button that opens a sign-in")

        def page_of(host):
            found = self.wait(lambda: [b for b in self.demo.beacons(host, mark) if b["event"] == "loaded"], host)
            return found[-1]

        mark = 0
        google = page_of("accounts.google.com")
        window = self.other_window("")
        expect(google["size"] == [520, 640], f"a popup of {google['size']}")
        self.report.saw("a window of just the size that the page asked for, with the host in its title bar")
        self.photograph("sign-in", window.rect)
        mark = len(self.demo.requests())
        self.click_in_popup(window, google, "single-sign-on")
        company = page_of("login.microsoftonline.com")
        self.click_in_popup(window, company, "next")
        self.report.did("went on to the company's sign-in, and signed in there")
        answer = self.wait(lambda: self.beacons("Mail", "popup-answer"), "the popup to tell Mail")[-1]
        self.wait(lambda: not self.other_windows(), "the popup to close")
        self.report.saw(f'the popup told Mail "{answer["word"]}" and closed')

    def answers_questions(self):
        loaded = self.app_page("Mail")

        def see_answer(text):
            self.wait(lambda: [b for b in self.beacons("Mail", "answer") if b["text"] == text], f'the answer "{text}"')

        folder = Path(os.environ["XDG_DATA_HOME"]).parent
        (folder / "one.txt").write_text("one")
        for thing, title, keys, answer in (
            ("ask-alert", "The telescope", ["Return"], "read"),
            ("ask-confirm", "Cancel the booking?", ["Escape"], "false"),
            ("ask-confirm", "Cancel the booking?", ["Return"], "true"),
            ("ask-prompt", "What shall we look at?", ["Return"], "M31"),
            ("ask-prompt", "What shall we look at?", ["Escape"], "null"),
        ):
            self.click_in_page(loaded, thing)
            self.other_window(title)
            if thing == "ask-prompt":
                self.photograph("prompt")
            for key in keys:
                self.desktop.press(key)
            see_answer(answer)
            self.report.did(f'answered "{title}" with {" ".join(keys)}; the page got: {answer}')
        self.click_in_page(loaded, "ask-file")
        self.other_window("Open")
        self.desktop.type(str(folder / "one.txt"))
        self.desktop.press("Return")
        see_answer("one.txt (3)")
        self.report.did("chose a file; the page got: one.txt (3)")
        self.click_in_page(loaded, "ask-print")
        self.other_window("Print")
        self.photograph("print")
        self.desktop.press("Escape")
        self.wait(lambda: not self.other_windows(), "no dialog")
        self.report.did("clicked on the page's print button")
        self.report.saw("the print dialog; Escape closed it")

    def is_notified(self):
        self.desktop.start_notification_daemon(Path(os.environ["XDG_DATA_HOME"]).parent)
        self.report.did("started a notification daemon")
        loaded = self.app_page("Mail")
        came_back = lambda: len([b for b in self.beacons("Mail", "answer") if b["text"] == "came back"])

        def notify():
            # Until the daemon is there, pages hear that nobody would see their notifications.
            self.click_in_page(loaded, "show-notification")
            return self.desktop.notifications()

        self.wait(notify, "a notification")
        self.report.did("clicked on a button of Mail that notifies")
        self.photograph("notification", self.desktop.screen)
        self.press("ctrl+3")
        self.see_app("Drive")
        self.press("ctrl+w")
        self.wait(lambda: not self.desktop.windows(APPLICATION_ID), "no window")
        self.report.did("went on to Drive, and closed the window")
        self.desktop.click_notification()
        self.ready()
        self.see_app("Mail")
        self.wait(lambda: came_back() == 1, "Mail to hear of the click")
        self.report.did("clicked on the notification")
        self.report.saw("the window is back, with Mail in it, and Mail's own notification heard the click")

        self.click_in_page(loaded, "open-popup")
        popup = self.other_window("Popup")
        mark = lambda: [b for b in self.beacons("Mail", "loaded") if b["href"].endswith("popup.html")]
        self.click_in_popup(popup, self.wait(mark, "the popup's page")[-1], "notify")
        self.wait(self.desktop.notifications, "a notification of the popup")
        self.desktop.activate(self.window())
        self.ready()
        self.desktop.click_notification()
        self.other_window("Popup")
        self.wait(lambda: came_back() == 2, "the popup to hear of the click")
        self.report.did("let a popup notify, went back to the main window, and clicked on the notification")
        self.report.saw("the popup in front, and its own notification heard the click")
        self.desktop.press("ctrl+w")
        self.wait(lambda: not self.other_windows(), "the popup to close")

    def finds(self):
        self.press("ctrl+f")
        self.wait(lambda: self.place("button", "Done"), "the find bar")
        self.desktop.type("bicycle")
        self.report.did('pressed Ctrl+F and typed "bicycle"')
        self.photograph("find")
        self.desktop.type("s everywhere")
        self.wait(lambda: self.place("label", "Not found"), '"Not found"')
        self.report.did('typed on, "bicycles everywhere"')
        self.report.saw('"Not found"')
        self.desktop.press("Escape")

    def manages_profiles(self):
        self.press("ctrl+comma")
        self.ready("Settings")
        self.report.did("pressed Ctrl+,")
        buttons = self.names("Settings", "button")
        expect(buttons[:6] == [*OTHER_ROW, *ACTIVE_ROW, "New Profile…"], f"not the two profiles, but {buttons}")
        self.report.saw(f"the settings, and in them {', '.join(buttons[:6])}")
        self.photograph("settings", self.inside("Settings"))
        self.press("alt+n", "Settings")
        self.ready("New Profile")
        apps = self.names("New Profile", "checkbox")
        expect(tuple(apps) == APPS, f"not a check box for each app, but {apps}")
        self.desktop.type(THIRD)
        self.report.did(f'pressed Alt+N, and typed "{THIRD}"')
        self.photograph("new-profile", self.inside("New Profile"))
        self.press("Return", "New Profile")
        rows = lambda: [name for name in self.names("Settings", "label") if name in (FIRST, SECOND, THIRD)]
        self.wait(lambda: rows() == [FIRST, SECOND, THIRD], "a third profile in the settings")
        self.report.did("pressed Return")
        self.report.saw(f"{THIRD} as the third profile")
        self.press("alt+o", "Settings")
        self.wait(lambda: "1. Allow notifications for Tarn" in self.names("Settings", "label"), "the other page")
        self.photograph("settings-notifications", self.inside("Settings"))
        self.press("alt+p", "Settings")
        delete = self.wait(lambda: self.last_button("Settings", "Delete profile"), "a button to delete it")
        self.click(delete)
        question = f"Delete “{THIRD}”?"
        self.wait(lambda: self.names(question, "button"), "a question")
        self.desktop.press("alt+d")
        self.wait(lambda: rows() == [FIRST, SECOND], "two profiles in the settings")
        self.report.did("looked at the notifications, clicked on the button that deletes the third, and pressed Alt+D")
        self.report.saw(f'the question "{question}", and two profiles again')
        self.press("Escape", "Settings")
        self.ready()
        self.report.did("pressed Escape")
        self.report.saw("Tarn's window with the keyboard again")

    def downloads(self):
        self.click_in_page(self.app_page("Mail"), "download-slow")
        self.report.did("clicked on a link to a file that comes slowly")
        self.other_window("Save")
        file = Path(os.environ["XDG_DATA_HOME"]).parent / "Slow file.bin"
        self.desktop.press("ctrl+a")
        self.desktop.type(str(file))
        self.desktop.press("Return")
        self.report.did("typed where it is to go into the save dialog")
        self.wait(lambda: self.place("button", "Downloads, 1 running"), "a running download in the title bar")
        self.wait(lambda: self.demo.progress, "progress on the dock")
        self.report.saw("the dialog gone, one running download in the title bar, progress on the dock")
        self.wait(lambda: self.demo.progress is None, "the end of the progress")
        size = file.stat().st_size
        expect(size == 600_000, f"a file of {size} bytes")
        self.report.saw(f"the plain icon on the dock again, and a file of {size} bytes")
        self.click_on("button", "Downloads")
        self.report.did("clicked on the downloads in the title bar")
        self.photograph("downloads")
        self.desktop.press("Escape")

    def turns_dark(self):
        self.quit()
        self.scheme = "dark"
        self.start("bo", ADW_DEBUG_COLOR_SCHEME="prefer-dark")
        self.report.did("pressed Ctrl+Q and started the program where the desktop prefers dark")
        self.see_inbox(12)
        inside = self.inside()
        x, y = inside.x + 4, inside.y + inside.height // 2
        sidebar = self.desktop.picture(Rect(x, y, 1, 1)).colour(x, y)
        expect(max(sidebar) < 80, f"the sidebar is not dark, but {sidebar}")
        self.report.saw("a dark sidebar, and pages in their dark colours")
        self.photograph("dark-mail")
        self.press("ctrl+2")
        self.see_app("Calendar")
        self.photograph("dark-calendar")
        self.quit()
        self.report.did("pressed Ctrl+Q")
        self.report.saw("the program ended as it should")

    def was_faultless(self):
        complaints = re.findall("(?:Gdk|Gtk)-CRITICAL.*", Path(self.demo.output.name).read_text(errors="replace"))
        expect(not complaints, f"the toolkit says: {' '.join(complaints[:1])}")
        self.report.saw("nothing critical in the program's output")


STEPS = (
    ("Tarn opens its window", Tour.opens),
    ("Reading a conversation takes it off the count", Tour.reads),
    ("A click in the sidebar changes the app", Tour.clicks_calendar),
    ("So do the keys", Tour.presses_drive),
    ("And so does the menu", Tour.opens_menu),
    ("A half-typed text stays while another app is in the window", Tour.keeps_draft),
    ("The other apps", Tour.visits_all),
    ("The second profile is somebody else", Tour.changes_profile),
    ("Back in the first profile", Tour.changes_back),
    ("Links to other sites go to the default browser", Tour.hands_over_links),
    ("Pages whose processes die come back by themselves", Tour.recovers),
    ("Closing the window only hides it", Tour.closes_and_opens),
    ("After a restart the size is the same, and both profiles are signed in", Tour.restarts),
    ("The user says where a link into another app opens", Tour.asks_where_links_open),
    ("A sign-in in a popup hands its result back", Tour.signs_in_by_popup),
    ("Pages ask, and are answered", Tour.answers_questions),
    ("A click on a notification leads to its page", Tour.is_notified),
    ("Finding in the page", Tour.finds),
    ("Profiles are made and deleted in the settings", Tour.manages_profiles),
    ("A download asks where, shows how far it is, and becomes a file", Tour.downloads),
    ("Dark, where the desktop is", Tour.turns_dark),
    ("The toolkit found no fault in all this", Tour.was_faultless),
)


def take(program, output, kind):
    """Gives back whether all steps came true."""
    report = Report(output)
    tour = Tour(program, output, report)
    try:
        for title, step in STEPS:
            report.step(title)
            step(tour)
            if kind and tour.demo.runs():
                killed, apps = tour.crashes.strike(kind)
                report.did(f"killed {kind} ({killed}) with SIGKILL; {', '.join(apps)} are there")
    except Exception as error:
        if not isinstance(error, NotTrue):
            traceback.print_exc()
        tour.desktop.picture().save(output / "failed.png")
        print(f"   WRONG: {error}")
        print(f"   the screen as it was: {output / 'failed.png'}; the program's output: {output / 'tarn-demo.log'}")
        print(f"step {report.steps} of {len(STEPS)} did not come true; the steps after it were not taken")
        return False
    finally:
        tour.close()
    print(f"{len(STEPS)} steps, all came true")
    return True


def main():
    parser = argparse.ArgumentParser(prog="take-tour")
    parser.add_argument("--kill", choices=KINDS, help="what is killed after each step")
    parser.add_argument("program", metavar="DEMO")
    parser.add_argument("output", metavar="OUTPUT", type=Path)
    arguments = parser.parse_args()
    if not shutil.which(arguments.program):
        parser.error(f"{arguments.program} is not a program")
    # Made anew, as far as it is ours.
    arguments.output.mkdir(parents=True, exist_ok=True)
    for pattern in OUR_FILES:
        for file in arguments.output.glob(pattern):
            file.unlink()
    sys.exit(0 if take(arguments.program, arguments.output, KINDS.get(arguments.kill)) else 1)


main()
