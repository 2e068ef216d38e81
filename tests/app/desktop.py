"""The window on a desktop: a window manager that puts a frame around it, and a panel at the screen's lower edge."""

import os
import re
import subprocess

import session
from harness import WindowTest, key, main

panel = 30  # pixels
configuration = f"""<openbox_config xmlns="http://openbox.org/3.4/rc">
<keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
<margins><top>0</top><bottom>{panel}</bottom><left>0</left><right>0</right></margins></openbox_config>"""


class DesktopTest(WindowTest):
    def startDesktop(self, width, height):
        self.addCleanup(os.environ.update, DISPLAY=os.environ["DISPLAY"])
        display, os.environ["DISPLAY"] = session.startDisplay(f"{width}x{height}")
        self.addCleanup(session.end, display)
        file = self.home / "rc.xml"
        file.write_text(configuration)
        manager = subprocess.Popen(["openbox", "--config-file", file], stderr=subprocess.DEVNULL)
        self.addCleanup(session.end, manager)
        self.until(lambda: self.numbers("-root", "_NET_WORKAREA")[:4] == [0, 0, width, height - panel])
        self.addCleanup(self.stop)  # before its display

    def numbers(self, *question):
        answer = subprocess.run(["xprop", *map(str, question)], check=True, capture_output=True, text=True).stdout
        return [int(number) for number in re.findall(r"\d+", answer)]

    def edges(self):
        """The frame's left, upper, right and lower edge."""
        left, right, top, bottom = self.numbers("-id", self.window, "_NET_FRAME_EXTENTS")
        told = subprocess.run(["xwininfo", "-id", self.window], check=True, capture_output=True, text=True).stdout
        x, y, width, height = (int(re.search(rf"{name}: *(-?\d+)", told)[1])
                               for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return x - left, y - top, x + width + right, y + height + bottom

    def testOpensOnTheFreeAreaAndClosesByKeysWhateverIsOpen(self):
        for width, height, name, keys in ((1280, 800, "Cancel", "alt+F4"), (1366, 768, "Cancel", "ctrl+w"),
                                          (1280, 720, "SHA512", "ctrl+q"), (1024, 600, "SHA512", "ctrl+w")):
            with self.subTest(width=width, height=height, name=name, keys=keys):
                self.startDesktop(width, height)
                self.start()
                self.until(lambda: self.edges()[3] == height - panel, lambda: f"the frame's edges are {self.edges()}")
                self.assertGreaterEqual(min(self.edges()), 0)
                self.openSheet()
                if name == "SHA512":
                    self.still("Algorithm").click()
                self.still(name)
                key(keys)
                self.assertEqual(self.process.wait(session.patience), 0)
            self.doCleanups()
            self.setUp()


main()
