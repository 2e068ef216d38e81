"""Drives the real application in a real window: pointer and keyboard through the display, and what is on screen read
as a screen reader reads it."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

import session
from session import GLib, main

secret = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ"  # the key of RFC 4226, appendix D, in Base32

Atspi = None  # there once the bus is
if "MIRROWVALE_TEST_HOME" in os.environ:
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi

    desktop = Atspi.get_desktop(0)  # brings the accessibility bus up before the application looks for it
    desktop.set_cache_mask(Atspi.Cache.NONE)


def xdotool(*words):
    return subprocess.run(["xdotool", *map(str, words)], check=True, capture_output=True, text=True).stdout.strip()


def key(*names):
    xdotool("key", *names)


def typeText(text):
    xdotool("type", "--delay", "2", text)


def clipboard(target="UTF8_STRING", selection="clipboard"):
    return subprocess.run(["xclip", "-selection", selection, "-o", "-t", target], capture_output=True,
                          text=True).stdout


def setClipboard(text, selection="clipboard"):
    subprocess.run(["xclip", "-selection", selection, "-i"], input=text, text=True, check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def pixels(width, height, left, top, window="root"):
    """The colours in a part of a window, by default of the screen, row by row: three bytes each."""
    part = f"{width}x{height}+{left}+{top}"
    drawn = subprocess.run(["import", "-window", window, "-crop", part, "-depth", "8", "rgb:-"], check=True,
                           capture_output=True).stdout
    return [drawn[byte:byte + 3] for byte in range(0, len(drawn), 3)]


def click(x, y):
    xdotool("mousemove", x, y, "click", 1)


def drag(x, y, toX, toY, steps=12):
    """Moves the pressed pointer evenly, as a finger would, and rests before letting go."""
    words = ["mousemove", x, y, "mousedown", 1]
    for step in range(1, steps + 1):
        # An application that is busy may see what comes at once as one move: it has time to see a first one.
        pause = 0.1 if step == steps // 3 else 0.015
        words += ["mousemove", x + (toX - x) * step // steps, y + (toY - y) * step // steps, "sleep", pause]
    xdotool(*words, "sleep", "0.1", "mouseup", 1)


class Element:
    """What stood on screen under a name when it was looked at."""

    def __init__(self, accessible, states):
        self.accessible, self.role = accessible, accessible.get_role_name()
        self.text = accessible.get_name() or self.role  # what has no name goes by its role
        self.focused, self.enabled = states.contains(Atspi.StateType.FOCUSED), states.contains(Atspi.StateType.ENABLED)
        self.active = states.contains(Atspi.StateType.ACTIVE)  # a window that has focus
        box = accessible.get_extents(Atspi.CoordType.SCREEN)
        self.left, self.top, self.width, self.height = box.x, box.y, box.width, box.height
        self.x, self.y = self.left + self.width // 2, self.top + self.height // 2

    def length(self):
        """The number of characters in a field."""
        return Atspi.Text.get_character_count(self.accessible)

    def click(self):
        click(self.x, self.y)


def walk(accessible, enters=lambda accessible: True):
    """An accessible and all below it; `enters` may leave some out, with what is below them."""
    yield accessible
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is not None and enters(child):  # none where it went away meanwhile
            yield from walk(child, enters)


def describe(accessible):
    """An element of what can be seen of an accessible, or none."""
    states = accessible.get_state_set()
    return Element(accessible, states) if states.contains(Atspi.StateType.SHOWING) else None


class WindowTest(unittest.TestCase):
    """A test with one home, one clock and one application at a time."""

    # Lines on standard error that the application is not to blame for: a reader asks for what has gone meanwhile.
    othersSay = ("qt.accessibility.atspi: Could not find accessible on path",)

    def setUp(self):
        self.home = pathlib.Path(tempfile.mkdtemp(dir=os.environ["MIRROWVALE_TEST_HOME"]))
        self.addCleanup(shutil.rmtree, self.home)
        self.process = self.window = None
        self.said = []
        self.addCleanup(self.assertNothingSaid)
        self.addCleanup(self.stop)
        self.setClock(59)

    def setClock(self, seconds):
        """Holds the application's clock at so many seconds after 1970."""
        clock = self.home / "clock"
        fresh = self.home / "clock.new"
        fresh.write_text(time.strftime("%Y-%m-%d %H:%M:%S\n", time.gmtime(seconds)))
        fresh.rename(clock)

    def environment(self, home):
        runtime = home / "runtime"
        runtime.mkdir(mode=0o700, parents=True, exist_ok=True)
        library, = pathlib.Path("/usr/lib").glob("*/faketime/libfaketimeMT.so.1")
        libraries = subprocess.run(["ldd", session.application], capture_output=True, text=True).stdout.split()
        sanitizer = [path for path in libraries if path.startswith("/") and "libasan" in path]  # has to come first
        return {**os.environ, "HOME": str(home), "XDG_RUNTIME_DIR": str(runtime),
                "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_QPA_PLATFORM": "xcb",
                # The sanitizer's allocator may not ask for the time: the held clock allocates.
                "ASAN_OPTIONS": "allocator_release_to_os_interval_ms=-1",
                "LD_PRELOAD": ":".join([*sanitizer, str(library)]), "FAKETIME_TIMESTAMP_FILE": str(self.home / "clock"),
                "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1", "NO_FAKE_STAT": "1"}

    def launch(self, environment, *arguments):
        """Starts the application. What it or its toolkit says on standard error fails the test."""
        self.said.append(tempfile.TemporaryFile("w+"))
        return subprocess.Popen([session.application, *arguments], env=environment, stdout=subprocess.DEVNULL,
                                stderr=self.said[-1])

    def assertNothingSaid(self):
        for said in self.said:
            with said:
                said.seek(0)
                self.assertEqual([line for line in said if not line.startswith(self.othersSay)], [])

    def start(self, *arguments):
        """Starts the application and waits until its window is shown and has focus."""
        self.process = self.launch(self.environment(self.home), *arguments)
        self.find("Add token")
        self.window = self.until(lambda: self.windowOf(self.process))
        self.assertEqual(xdotool("getwindowname", self.window), "Mirrowvale Auth")
        xdotool("windowfocus", "--sync", self.window)

    def windowOf(self, process):
        return xdotool("search", "--onlyvisible", "--pid", process.pid).split()[0]

    def stop(self):
        """Closes the window, which ends the application; its list is stored already."""
        process, self.process = self.process, None
        if process and process.poll() is None and self.window:
            xdotool("windowfocus", self.window, "key", "ctrl+q")
            self.assertEqual(process.wait(session.patience), 0)
        elif process:
            session.end(process)
        self.window = None

    def until(self, condition, message=None):
        """Waits for a condition and returns what it gave; on failure, the screen is kept as a picture."""
        end = time.monotonic() + session.patience
        while True:
            result = None
            try:
                result = condition()
            except (GLib.Error, subprocess.CalledProcessError):
                pass  # what was being looked at went away meanwhile
            if result:
                return result
            if self.process and self.process.poll() is not None:
                self.fail(f"the application ended with status {self.process.returncode}")
            if time.monotonic() > end:
                session.pictures.mkdir(parents=True, exist_ok=True)
                picture = session.pictures / (self.id().rpartition("__main__.")[2] + ".png")
                subprocess.run(["import", "-window", "root", str(picture)], check=False)
                self.fail(f"{message() if message else 'not in time'}; see {picture}")
            time.sleep(0.03)

    def elements(self):
        """Everything on screen, from top to bottom."""
        return self.until(lambda: sorted(filter(None, map(describe, self.accessibles())), key=lambda e: e.y))

    def accessibles(self, **which):
        for index in range(desktop.get_child_count()):
            program = desktop.get_child_at_index(index)
            if program and program.get_process_id() == self.process.pid:
                yield from walk(program, **which)

    def texts(self):
        return [element.text for element in self.elements()]

    def find(self, text, where=lambda element: True):
        """Waits for a text on screen; `where` may choose among several."""
        return self.until(lambda: next((e for e in self.elements() if e.text == text and where(e)), None),
                          lambda: f"{text!r} is not among {self.texts()}")

    def rows(self):
        return [element for element in self.elements() if element.role == "list item"]

    def row(self, issuer, *parts):
        """Waits for the row of an issuer that has all of the parts too; a code is read digit by digit."""
        told = [" ".join(part.replace(" ", "")) if part.replace(" ", "").isdigit() else part for part in parts]
        return self.until(lambda: next((row for row in self.rows() if row.text.split(", ")[0] == issuer
                                        and set(told) <= set(row.text.split(", "))), None),
                          lambda: f"{issuer!r} with {told} is not among {[row.text for row in self.rows()]}")

    def inRow(self, issuer, text):
        """Waits for something in the row of an issuer."""
        row = self.row(issuer)
        return self.find(text, lambda element: row.top <= element.y <= row.top + row.height)

    def gone(self, text):
        self.until(lambda: text not in self.texts(), lambda: f"{text!r} is still there")

    def still(self, text):
        """Waits for a text that has come to rest, after a slide or a swipe, and can be pressed."""
        seen = []

        def resting():
            element = self.find(text)
            seen.append((element.left, element.top))
            return element if len(seen) > 2 and len(set(seen[-3:])) == 1 else None
        return self.until(resting)

    def openSheet(self):
        self.find("Add token").click()
        self.still("Cancel")

    def fill(self, name, text):
        """Replaces the text in a field."""
        self.find(name).click()
        key("ctrl+a", "BackSpace")
        self.until(lambda: self.find(name).length() == 0)
        setClipboard(text)
        key("ctrl+v")
        self.until(lambda: self.find(name).length() > 0)

    def add(self, uri):
        """Adds a token by its URI and waits until the list is back."""
        self.openSheet()
        self.fill("otpauth:// URI", uri)
        self.find("Import URI").click()
        self.gone("Cancel")
