"""The looks that the desktop asks for: followed from the start, and while the application runs."""

import subprocess

from harness import SettingsPortal, WindowTest, main, secret


class AppearanceTest(WindowTest):
    def setUp(self):
        super().setUp()
        portal = SettingsPortal()
        self.addCleanup(portal.close)
        self.set = portal.set

    def ground(self):
        """The colour of the window in its lower left corner."""
        return subprocess.run(["import", "-window", self.window, "-crop", "1x1+5+500", "-depth", "8", "rgb:-"],
                              capture_output=True, check=True).stdout

    def testLightAndDark(self):
        dark, light = b"\0\0\0", b"\xff\xff\xff"
        self.set("org.freedesktop.appearance color-scheme", "uint32 1")
        self.start()
        for scheme, colour in ((None, dark), (2, light), (1, dark), (0, light)):
            if scheme is not None:
                self.set("org.freedesktop.appearance color-scheme", f"uint32 {scheme}")
            self.until(lambda: self.ground() == colour, lambda: f"{scheme} gives {self.ground()}")

    def testTextScale(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        usual = self.row("Acme").height
        for factor, expected in ((2.0, 1.6), (0.8, 0.8), (50.0, 1.6), (1.0, 1.0)):
            self.set("org.gnome.desktop.interface text-scaling-factor", factor)
            self.until(lambda: abs(self.row("Acme").height / usual - expected) < 0.15,
                       lambda: f"{factor} gives {self.row('Acme').height} for {usual}")

    def testReducedMotion(self):
        self.set("org.gnome.desktop.interface enable-animations", "false")
        self.start()
        tops = set()
        self.find("Add token").click()
        self.until(lambda: tops.add(self.find("Cancel").top) or len(tops) > 1 or self.find("otpauth:// URI").focused)
        self.assertEqual(tops, {self.find("Cancel").top})  # the sheet stands at once


if __name__ == "__main__":
    main()
