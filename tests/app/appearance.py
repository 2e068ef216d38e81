"""The looks that the desktop asks for: followed from the start, and while the application runs. A real portal tells
them."""

import os
import signal
import subprocess

import session
from harness import WindowTest, main
from session import callBus, setDesktop

session.withPortal = True
light, dark = b"\xff\xff\xff", b"\0\0\0"


class AppearanceTest(WindowTest):
    def ground(self):
        """The colour of the window in its lower left corner."""
        return subprocess.run(["import", "-window", self.window, "-crop", "1x1+5+500", "-depth", "8", "rgb:-"],
                              capture_output=True, check=True).stdout

    def testLightAndDark(self):
        setDesktop(color_scheme="'prefer-dark'")
        self.start()  # and so does the portal
        with self.assertRaises(PermissionError):
            os.readlink(f"/proc/{self.process.pid}/root")  # which it would have to open
        for scheme, colour in ((None, dark), ("light", light), ("dark", dark)):
            if scheme:
                setDesktop(color_scheme=f"'prefer-{scheme}'")
            self.until(lambda: self.ground() == colour, lambda: f"{scheme} gives {self.ground()}")
        self.restart()
        self.until(lambda: self.ground() == dark)
        setDesktop(color_scheme="'default'")
        self.until(lambda: self.ground() == light)

    def testPortalThatAnswersLate(self):
        setDesktop(color_scheme="'prefer-dark'")
        bus, name = ("org.freedesktop.DBus", "/", "org.freedesktop.DBus"), "'org.freedesktop.portal.Desktop'"
        callBus(*bus, "StartServiceByName", f"({name}, uint32 0)")
        process, = callBus(*bus, "GetConnectionUnixProcessID", f"({name},)")
        os.kill(process, signal.SIGSTOP)
        self.addCleanup(os.kill, process, signal.SIGCONT)
        self.start()
        self.until(lambda: self.ground() == light)
        os.kill(process, signal.SIGCONT)
        self.until(lambda: self.ground() == dark)

    def testReducedMotion(self):
        setDesktop(enable_animations="false")
        self.start()
        tops = set()
        self.find("Add token").click()
        self.until(lambda: tops.add(self.find("Cancel").top) or len(tops) > 1 or self.find("otpauth:// URI").focused)
        self.assertEqual(tops, {self.find("Cancel").top})  # the sheet stands at once


main()
