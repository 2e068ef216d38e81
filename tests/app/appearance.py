"""The looks that the desktop asks for: followed from the start, and while the application runs. A real portal tells
them."""

import os
import signal

import session
from harness import WindowTest, key, main, pixels, secret, setClipboard, xdotool
from session import callBus, setDesktop

session.withPortal = True
session.screen = "1200x1500"
light, dark = b"\xff\xff\xff", b"\0\0\0"


class AppearanceTest(WindowTest):
    scale = 1

    def environment(self, home):
        return {**super().environment(home), "QT_SCALE_FACTOR": str(self.scale)}

    def ground(self):
        """The colour of the window in its lower left corner."""
        return pixels(1, 1, 5, 500, self.window)[0]

    def testLightAndDark(self):
        setDesktop(color_scheme="'prefer-dark'")
        self.start()  # and so does the portal
        with self.assertRaises(PermissionError):
            os.readlink(f"/proc/{self.process.pid}/root")  # which it would have to open
        for scheme, colour in ((None, dark), ("light", light), ("dark", dark)):
            if scheme:
                setDesktop(color_scheme=f"'prefer-{scheme}'")
            self.until(lambda: self.ground() == colour, lambda: f"{scheme} gives {self.ground()}")
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

    def testLargeCode(self):
        """Its digits are larger than the toolkit keeps as pictures, 64 pixels: it may draw them otherwise, but draws."""
        self.scale = 3
        self.start()
        setClipboard(f"otpauth://totp/Acme:alice?secret={secret}")
        key("ctrl+n")
        self.until(lambda: self.find("otpauth:// URI").focused)
        key("ctrl+v", "Tab", "Return")
        copy = self.inRow("Acme", "Copy code")
        width = self.find("Mirrowvale Auth", lambda element: element.role in ("frame", "window")).width
        factor = int(xdotool("getwindowgeometry", "--shell", self.window).split("WIDTH=")[1].split()[0]) / width
        left, middle = round(copy.left * factor) // 4, round(copy.y * factor)
        self.until(lambda: len(set(pixels(left, 20, left, middle, self.window))) > 1)

    def testReducedMotion(self):
        setDesktop(enable_animations="false")
        self.start()
        tops = set()
        self.find("Add token").click()
        self.until(lambda: tops.add(self.find("Cancel").top) or len(tops) > 1 or self.find("otpauth:// URI").focused)
        self.assertEqual(tops, {self.find("Cancel").top})  # the sheet stands at once


main()
