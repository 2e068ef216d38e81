"""Starts of the program while it runs already: one window on one bus, and one on each list."""

import os
import pathlib
import signal
import subprocess

import harness
from harness import WindowTest, main, secret, xdotool

name = "app.mirrowvale.authenticator"


class StartingTest(WindowTest):
    def start(self):
        super().start()
        self.onBus = self.environment(self.home)
        self.withoutBus = {**self.onBus, "DBUS_SESSION_BUS_ADDRESS": ""}

    def second(self, environment, *arguments):
        process = self.launch(environment, *arguments)
        self.addCleanup(harness.end, process)
        return process

    def endsWith(self, status, said, environment, *arguments):
        """Starts the program, which ends by itself with a status and says one line that matches, or nothing."""
        self.assertEqual(self.second(environment, *arguments).wait(harness.patience), status)
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
        self.process = self.second({**nowhere, "DISPLAY": screen["DISPLAY"]}, "-platform", "xcb", "-qwindowtitle", "x")
        self.window = self.until(lambda: self.windowOf(self.process))

    def testSignalsEndInOrder(self):
        """The clipboard goes to its manager, while the form is open; off screen, there is none."""
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        manager = harness.ClipboardManager()
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number):
                self.inRow("Acme", "Copy code").click()
                self.until(lambda: harness.clipboard().isdigit())
                self.openSheet()
                self.process.send_signal(number)
                self.until(manager.answer)
                self.assertEqual(self.process.wait(harness.patience), -number)
                self.start()
        offScreen = self.second({**self.environment(self.home / "off"), "DBUS_SESSION_BUS_ADDRESS": ""},
                                "-platform", "offscreen")
        self.until(lambda: (self.home / "off/data/mirrowvale-authenticator/instance.lock").exists())
        offScreen.terminate()
        self.assertEqual(offScreen.wait(harness.patience), -signal.SIGTERM)

    def testSecondStartBringsTheFirstUp(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        self.process.kill()
        self.process.wait()
        self.restart()  # what a killed process held is free again
        self.row("Acme")
        apart = {**self.environment(self.home / "apart"), "DBUS_SESSION_BUS_ADDRESS": ""}
        other = self.second(apart)  # shares neither a bus nor a folder: it has a list of its own
        self.until(lambda: self.windowOf(other) == self.windowInFront())
        for how, ask in {
                "same bus and folder": lambda: self.startAgain(self.onBus),
                "another folder": lambda: self.startAgain(self.environment(self.home / "another")),
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
        installed.write_text(service.read_text().replace("@CMAKE_INSTALL_FULL_BINDIR@", str(harness.application.parent)))
        self.addCleanup(installed.unlink)
        harness.callBus(*bus, "ReloadConfig")
        self.call("Activate", "(@a{sv} {},)")
        process, = harness.callBus(*bus, "GetConnectionUnixProcessID", f"('{name}',)")
        self.addCleanup(os.kill, process, signal.SIGTERM)
        self.until(lambda: xdotool("search", "--onlyvisible", "--pid", process))

    def startAgain(self, environment):
        self.endsWith(0, None, environment)

    def call(self, method, arguments):
        """Asks as a desktop does."""
        harness.callBus(name, "/" + name.replace(".", "/"), "org.freedesktop.Application", method, arguments)

    def windowInFront(self):
        return xdotool("mousemove", 100, 300, "getmouselocation", "--shell").partition("WINDOW=")[2].split()[0]

    def testStartsWhileTheFirstWaits(self):
        """As for the user's answer to a keyring; what it was asked for it does then."""
        self.start()
        self.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.process.send_signal, signal.SIGCONT)
        self.endsWith(0, None, self.onBus)
        self.endsWith(1, "already running", self.withoutBus)
        self.process.send_signal(signal.SIGCONT)
        self.find("Add token")  # it goes on

    def testFrozenBus(self):
        """A bus that does not answer keeps nobody from their list."""
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], stdout=subprocess.PIPE,
                               text=True)
        address = bus.stdout.readline().strip()
        self.addCleanup(harness.end, bus)
        bus.send_signal(signal.SIGSTOP)
        self.addCleanup(bus.send_signal, signal.SIGCONT)
        self.process = self.second({**self.environment(self.home), "DBUS_SESSION_BUS_ADDRESS": address})
        self.window = self.until(lambda: self.windowOf(self.process))
        self.endsWith(1, "already running", {**self.environment(self.home), "DBUS_SESSION_BUS_ADDRESS": address})


main()
