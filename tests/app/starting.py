"""Starts of the program while it runs already: one window on one bus, and one on each list."""

import os
import pathlib
import signal
import subprocess
import tkinter

import session
from harness import WindowTest, clipboard, main, secret, xdotool
from session import callBus

name = "app.mirrowvale.authenticator"


class StartingTest(WindowTest):
    def second(self, environment, *arguments):
        process = self.launch(environment, *arguments)
        self.addCleanup(session.end, process)
        return process

    def endsWith(self, status, said, environment, *arguments):
        """Starts the program, which ends by itself with a status and says one line that matches, or nothing."""
        self.assertEqual(self.second(environment, *arguments).wait(session.patience), status)
        with self.said.pop() as errors:
            errors.seek(0)
            self.assertRegex(errors.read(), f"^mirrowvale-authenticator: .*{said}.*\n$" if said else "^$")

    def testArguments(self):
        screen = self.environment(self.home)
        nowhere = {name: value for name, value in screen.items() if name not in ("DISPLAY", "QT_QPA_PLATFORM")}
        uri = f"otpauth://totp/Acme:alice?secret={secret}"
        for status, said, environment, *arguments in (
                (0, None, nowhere, "--help"),
                (0, None, nowhere, "--version"),
                (2, "URI goes into the form", screen, uri),
                (2, "URI goes into the form", screen, uri, "--help"),
                (2, "--help and --version alone", screen, "-platform", "xcb", "--verbose"),
                (1, "No window can", nowhere),
                (1, "No window can", {**nowhere, "DISPLAY": "nowhere:7"}),
                (1, "No window can", {**nowhere, "WAYLAND_DISPLAY": "nowhere", "XDG_SESSION_TYPE": "wayland"})):
            with self.subTest(arguments=arguments):
                self.endsWith(status, said, environment, *arguments)

    def testSignalsEndInOrder(self):
        """The clipboard goes to its manager, while the form is open."""
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        manager, asked = tkinter.Tk(), []
        self.addCleanup(manager.destroy)
        manager.selection_own(selection="CLIPBOARD_MANAGER")
        manager.selection_handle(lambda *_: asked.append(True), selection="CLIPBOARD_MANAGER", type="SAVE_TARGETS")
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number):
                self.inRow("Acme", "Copy code").click()
                self.until(lambda: clipboard().isdigit())
                self.openSheet()
                self.process.send_signal(number)
                self.until(lambda: manager.update() or asked)
                asked.clear()
                self.assertEqual(self.process.wait(session.patience), -number)
                self.start()

    def testSecondStartBringsTheFirstUp(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        self.process.kill()
        self.process.wait()
        self.start()  # what a killed process held is free again
        self.row("Acme")
        apart = {**self.environment(self.home / "apart"), "DBUS_SESSION_BUS_ADDRESS": ""}
        other = self.second(apart)  # shares neither a bus nor a folder: it has a list of its own
        self.until(lambda: self.windowOf(other) == self.windowInFront())
        for how, ask in {
                "same bus and folder": lambda: self.endsWith(0, None, self.environment(self.home)),
                "while the first waits": self.startWhileTheFirstWaits,
                "another folder": lambda: self.endsWith(0, None, self.environment(self.home / "another")),
                "the desktop": lambda: self.call("Activate", "({'activation-token': <'_TIME0'>, 'x': <1>},)"),
                "the desktop, with files": lambda: self.call("Open", "(['file:///x'], @a{sv} {})")}.items():
            with self.subTest(how):
                ask()
                self.until(lambda: self.window == self.windowInFront() == xdotool("getwindowfocus"))
                xdotool("windowraise", self.windowOf(other))
                self.until(lambda: self.windowOf(other) == self.windowInFront())

    def testStartedByTheBus(self):
        """As a desktop starts the installed program."""
        bus = ("org.freedesktop.DBus", "/", "org.freedesktop.DBus")
        service = pathlib.Path(__file__).parents[2] / f"packaging/{name}.service.in"
        installed = pathlib.Path(os.environ["XDG_RUNTIME_DIR"], f"dbus-1/services/{name}.service")
        installed.write_text(service.read_text().replace("@CMAKE_INSTALL_FULL_BINDIR@", str(session.application.parent)))
        self.addCleanup(installed.unlink)
        callBus(*bus, "ReloadConfig")
        self.call("Activate", "(@a{sv} {},)")
        process, = callBus(*bus, "GetConnectionUnixProcessID", f"('{name}',)")
        self.addCleanup(os.kill, process, signal.SIGTERM)
        self.until(lambda: xdotool("search", "--onlyvisible", "--pid", process))

    def startWhileTheFirstWaits(self):
        """As for the user's answer to a keyring; what it was asked for it does then."""
        self.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.process.send_signal, signal.SIGCONT)
        self.endsWith(0, None, self.environment(self.home))
        self.endsWith(1, "already running", {**self.environment(self.home), "DBUS_SESSION_BUS_ADDRESS": ""})
        self.process.send_signal(signal.SIGCONT)

    def call(self, method, arguments):
        """Asks as a desktop does."""
        callBus(name, "/" + name.replace(".", "/"), "org.freedesktop.Application", method, arguments)

    def windowInFront(self):
        return xdotool("mousemove", 100, 300, "getmouselocation", "--shell").partition("WINDOW=")[2].split()[0]

    def testFrozenBus(self):
        """A bus that does not answer keeps nobody from their list."""
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], stdout=subprocess.PIPE,
                               text=True)
        address = bus.stdout.readline().strip()
        self.addCleanup(session.end, bus)
        bus.send_signal(signal.SIGSTOP)
        self.addCleanup(bus.send_signal, signal.SIGCONT)
        self.process = self.second({**self.environment(self.home), "DBUS_SESSION_BUS_ADDRESS": address})
        self.window = self.until(lambda: self.windowOf(self.process))
        self.endsWith(1, "already running", {**self.environment(self.home), "DBUS_SESSION_BUS_ADDRESS": address})


main()
