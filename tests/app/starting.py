"""Starts of the program while it runs already: one window on one bus, and one on each list."""

import os
import pathlib
import signal
import subprocess

import harness
from harness import GLib, WindowTest, main, secret, xdotool

name = "app.mirrowvale.authenticator"


class StartingTest(WindowTest):
    def start(self):
        super().start()
        self.onBus = self.environment(self.home)
        self.withoutBus = {**self.onBus, "DBUS_SESSION_BUS_ADDRESS": ""}

    def second(self, environment):
        process = self.launch(environment)
        self.addCleanup(harness.end, process)
        return process

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
                "no bus": lambda: self.startAgain(self.withoutBus),
                "the desktop": lambda: self.call("Activate", "({'activation-token': <'_TIME0'>, 'x': <1>},)"),
                "the desktop, with files": lambda: self.call("Open", "(['file:///x'], @a{sv} {})")}.items():
            with self.subTest(how):
                ask()
                self.until(lambda: self.window == self.windowInFront() == xdotool("getwindowfocus"))
                self.startAgain(apart)
                self.until(lambda: self.windowOf(other) == self.windowInFront())
        with self.assertRaisesRegex(GLib.Error, "no actions"):
            self.call("ActivateAction", "('quit', @av [], @a{sv} {})")

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
        self.assertEqual(self.second(environment).wait(harness.patience), 0)

    def call(self, method, arguments):
        """Asks as a desktop does."""
        harness.callBus(name, "/" + name.replace(".", "/"), "org.freedesktop.Application", method, arguments)

    def windowInFront(self):
        return xdotool("mousemove", 100, 300, "getmouselocation", "--shell").partition("WINDOW=")[2].split()[0]

    def testStartsEndWhileTheFirstIsFrozen(self):
        self.start()
        self.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.process.send_signal, signal.SIGCONT)
        for environment in (self.onBus, self.withoutBus):
            self.assertNotEqual(self.second(environment).wait(harness.patience), 0)
            with self.said.pop() as said:
                said.seek(0)
                self.assertRegex(said.read(), "does not answer.\n$")
        self.process.send_signal(signal.SIGCONT)
        self.startAgain(self.onBus)

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
        self.startAgain({**self.environment(self.home), "DBUS_SESSION_BUS_ADDRESS": address})


main()
