"""Drives the real application in a real window: an X display, a session bus and a home of its own, pointer and
keyboard through the display, and what is on screen read as a screen reader reads it."""

import ctypes
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as ElementTree

application = None  # the program under test
pictures = None  # where a failed wait leaves what was on screen
screen = "600x1000x24"  # of the virtual display
secret = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ"  # the key of RFC 4226, appendix D, in Base32
ordinaryUser = False  # whether the tests, if root starts them, are to run as a user without privileges
withPortal = False  # whether the session has the portal that reports how the desktop wants applications to look
emulated = "MIRROWVALE_EMULATED" in os.environ  # whether an emulator runs all this, a good deal slower
patience = 200.0 if emulated else 20.0  # seconds until a condition that does not come true counts as failed


def main():
    """Runs the calling file's tests: PROGRAM PICTURE-FOLDER [unittest's arguments]. The tests need a display
    and a bus from their first import on, so the file starts itself anew once both are there."""
    global application, pictures
    if "MIRROWVALE_TEST_HOME" in os.environ:
        application, pictures = (pathlib.Path(text).resolve() for text in sys.argv[1:3])
        unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
    with tempfile.TemporaryDirectory() as home:
        environment = {name: value for name, value in os.environ.items()
                       if name in ("PATH", "MIRROWVALE_EMULATED", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")}
        environment.update(LANG="C.UTF-8", TZ="UTC", XDG_RUNTIME_DIR=home, HOME=home, GSETTINGS_BACKEND="keyfile",
                           MIRROWVALE_TEST_HOME=home, PYTHONDONTWRITEBYTECODE="1")
        hideServices(pathlib.Path(home, "dbus-1/services"))
        # The backend that knows the desktop's settings, which a newer portal has to be given by name.
        preferred = pathlib.Path(home, ".config/xdg-desktop-portal/portals.conf")
        preferred.parent.mkdir(parents=True)
        preferred.write_text("[preferred]\ndefault=gtk\n")
        words, identity = sys.argv, {}
        if ordinaryUser and os.geteuid() == 0:
            words, identity = asOrdinaryUser(pathlib.Path(home), environment, *sys.argv)
        reading, writing = os.pipe()
        display = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", screen, "-nolisten", "tcp"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        try:
            environment["DISPLAY"] = ":" + os.read(reading, 16).decode().strip()
            sys.exit(subprocess.run(["dbus-run-session", "--", sys.executable, *words], env=environment,
                                    stdin=subprocess.DEVNULL, **identity).returncode)
        finally:
            display.terminate()
            display.wait()


def hideServices(folder):
    """Puts services that cannot be started in the place of those of the machine that no test is to start: its keyring
    would ask for a password."""
    folder.mkdir(mode=0o700, parents=True)
    documents = shutil.copy(pathlib.Path(__file__).with_name("documents.py"), folder)
    for name, program in {
        "org.freedesktop.secrets": "/bin/false",
        "org.freedesktop.portal.Documents": f"{sys.executable} {documents}",
        **({} if withPortal else {"org.freedesktop.portal.Desktop": "/bin/false"}),
    }.items():
        folder.joinpath(name + ".service").write_text(f"[D-BUS Service]\nName={name}\nExec={program}\n")


def asOrdinaryUser(home, environment, script, program, folder, *rest):
    """Gives the home to a user without privileges, with a copy of what that user may not be able to reach.
    @returns the command's words, and as whom to run it"""
    shutil.copytree(pathlib.Path(script).parent, home / "tests")
    copied = shutil.copy(program, home)
    leaks = pathlib.Path(__file__).resolve().parents[1] / "toolkit-leaks.txt"
    environment["LSAN_OPTIONS"] = environment.get("LSAN_OPTIONS", "").replace(str(leaks), shutil.copy(leaks, home))
    pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
    user = 65534
    for path in (home, *home.rglob("*"), folder):
        os.chown(path, user, user)
    return ([home / "tests" / pathlib.Path(script).name, copied, pathlib.Path(folder).resolve(), *rest],
            {"user": user, "group": user, "extra_groups": []})


Atspi = Gio = GLib = None  # there once the bus is
if "MIRROWVALE_TEST_HOME" in os.environ:
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, Gio, GLib

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


def openDisplay():
    """@returns the X library and a connection of its"""
    xlib = ctypes.CDLL("libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    return xlib, ctypes.c_void_p(xlib.XOpenDisplay(None))


def closeWindow(window):
    """Asks a window to close, as its title bar's button does."""
    xlib, display = openDisplay()
    protocols, delete = (xlib.XInternAtom(display, name, 0) for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW"))
    # An XClientMessageEvent, padded to the size of an XEvent.
    message = struct.pack("iLiPLLi5l", 33, 0, 0, 0, int(window), protocols, 32, delete, 0, 0, 0, 0).ljust(192, b"\0")
    xlib.XSendEvent(display, ctypes.c_ulong(int(window)), 0, 0, message)
    xlib.XCloseDisplay(display)


class ClipboardManager:
    """The display's, which a program that ends asks to take over what it holds in the clipboard."""

    def __init__(self):
        self.xlib, self.display = openDisplay()
        self.xlib.XDefaultRootWindow.restype = ctypes.c_ulong
        root = ctypes.c_ulong(self.xlib.XDefaultRootWindow(self.display))
        window = self.xlib.XCreateSimpleWindow(self.display, root, 0, 0, 1, 1, 0, 0, 0)
        name = self.xlib.XInternAtom(self.display, b"CLIPBOARD_MANAGER", 0)
        self.xlib.XSetSelectionOwner(self.display, name, window, 0)
        self.xlib.XSync(self.display, 0)

    def answer(self):
        """Answers what a program has asked meanwhile. @returns whether one has"""
        while self.xlib.XPending(self.display):
            event = (ctypes.c_long * 24)()  # an XSelectionRequestEvent, answered by an XSelectionEvent
            self.xlib.XNextEvent(self.display, event)
            if event[0] & 0xffffffff == 30:
                reply = (ctypes.c_long * 24)(31, 0, 0, 0, *event[5:10])
                self.xlib.XSendEvent(self.display, ctypes.c_ulong(event[5]), 0, 0, reply)
                self.xlib.XFlush(self.display)
                return True
        return False


def end(process):
    process.terminate()
    process.wait()


def callBus(service, path, interface, method, arguments="()", flags=0):
    """A call on the session's bus; the arguments in GVariant's text form."""
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        service, path, interface, method, GLib.Variant.parse(None, arguments, None, None), None, flags, -1).unpack()


def setDesktop(**settings):
    """Gives the desktop these settings alone: the names, and the values in GVariant's text form. A portal that runs
    knows of them then."""
    settings = {name.replace("_", "-"): value for name, value in settings.items()}
    file = pathlib.Path(os.environ["HOME"], ".config/glib-2.0/settings/keyfile")
    file.parent.mkdir(parents=True, exist_ok=True)
    fresh = file.with_suffix(".new")
    fresh.write_text("\n".join(["[org/gnome/desktop/interface]", *map("=".join, settings.items()), ""]))
    fresh.rename(file)
    portal, group = "org.freedesktop.portal.Desktop", "org.gnome.desktop.interface"
    while callBus("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner", f"('{portal}',)")[0]:
        known, = callBus(portal, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "ReadAll",
                         f"(['{group}'],)")
        if all(known[group][name] == GLib.Variant.parse(None, value, None, None).unpack()
               for name, value in settings.items()):
            break
        time.sleep(0.03)


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


def walk(accessible):
    yield accessible
    for index in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(index)
        if child is not None:
            yield from walk(child)


def describe(accessible):
    """An element of what can be seen of an accessible, or none."""
    states = accessible.get_state_set()
    return Element(accessible, states) if states.contains(Atspi.StateType.SHOWING) else None


class WindowTest(unittest.TestCase):
    """A test with one home, one clock and one application at a time."""

    language = None  # of the interface, unless it is English
    # Lines on standard error that the application is not to blame for: a reader asks for what has gone meanwhile.
    othersSay = ("qt.accessibility.atspi: Could not find accessible on path",)

    def title(self, text):
        """A text of the interface in its language; any other as it is."""
        if not self.language:
            return text
        translations = pathlib.Path(__file__).resolve().parents[2] / f"ui/translations/mirrowvale_{self.language}.ts"
        messages = ElementTree.parse(translations).getroot().iter("message")
        return next((m.findtext("translation") for m in messages if m.findtext("source") == text), text)

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
        libraries = subprocess.run(["ldd", application], capture_output=True, text=True).stdout.split()
        sanitizer = [path for path in libraries if path.startswith("/") and "libasan" in path]  # has to come first
        language = {"LANGUAGE": self.language} if self.language else {}
        return {**os.environ, **language, "HOME": str(home), "XDG_DATA_HOME": str(home / "data"),
                "XDG_STATE_HOME": str(home / "state"), "XDG_CACHE_HOME": str(home / "cache"),
                "XDG_CONFIG_HOME": str(home / "config"), "XDG_RUNTIME_DIR": str(runtime),
                "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_QPA_PLATFORM": "xcb",
                # The sanitizer's allocator may not ask for the time: the held clock allocates.
                "ASAN_OPTIONS": "allocator_release_to_os_interval_ms=-1",
                "LD_PRELOAD": ":".join([*sanitizer, str(library)]), "FAKETIME_TIMESTAMP_FILE": str(self.home / "clock"),
                "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1", "NO_FAKE_STAT": "1"}

    def launch(self, environment, *arguments):
        """Starts the application. What it or its toolkit says on standard error fails the test."""
        self.said.append(tempfile.TemporaryFile("w+"))
        return subprocess.Popen([application, *arguments], env=environment, stdout=subprocess.DEVNULL,
                                stderr=self.said[-1])

    def assertNothingSaid(self):
        for said in self.said:
            with said:
                said.seek(0)
                self.assertEqual([line for line in said if not line.startswith(self.othersSay)], [])

    def start(self):
        """Starts the application and waits until its window is shown and has focus."""
        self.process = self.launch(self.environment(self.home))
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
            closeWindow(self.window)
            self.assertEqual(process.wait(patience), 0)
        elif process:
            end(process)
        self.window = None

    def restart(self):
        self.stop()
        self.start()

    def until(self, condition, message=None):
        """Waits for a condition and returns what it gave; on failure, the screen is kept as a picture."""
        end = time.monotonic() + patience
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
                pictures.mkdir(parents=True, exist_ok=True)
                picture = pictures / (self.id().rpartition("__main__.")[2] + ".png")
                subprocess.run(["import", "-window", "root", str(picture)], check=False)
                self.fail(f"{message() if message else 'not in time'}; see {picture}")
            time.sleep(0.03)

    def elements(self):
        """Everything on screen, from top to bottom."""
        return self.until(lambda: sorted(filter(None, map(describe, self.accessibles())), key=lambda e: e.y))

    def accessibles(self):
        for index in range(desktop.get_child_count()):
            program = desktop.get_child_at_index(index)
            if program and program.get_process_id() == self.process.pid:
                yield from walk(program)

    def texts(self):
        return [element.text for element in self.elements()]

    def find(self, text, where=lambda element: True):
        """Waits for a text on screen; `where` may choose among several."""
        text = self.title(text)
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
        self.until(lambda: self.title(text) not in self.texts(), lambda: f"{text!r} is still there")

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
        setClipboard(text)
        key("ctrl+v")
        self.until(lambda: self.find(name).length() > 0)

    def add(self, uri):
        """Adds a token by its URI and waits until the list is back."""
        self.openSheet()
        self.fill("otpauth:// URI", uri)
        self.find("Import URI").click()
        self.gone("Cancel")
