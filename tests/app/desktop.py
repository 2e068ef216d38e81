"""The window on a desktop: a window manager that puts a frame around it, and a panel at the screen's lower edge."""

import os
import re
import subprocess

import harness
from harness import WindowTest, key, main

panel = 30  # pixels
margins = f"""<openbox_config xmlns="http://openbox.org/3.4/rc">
<margins><top>0</top><bottom>{panel}</bottom><left>0</left><right>0</right></margins></openbox_config>"""


class DesktopTest(WindowTest):
    def serve(self, *command, **options):
        self.addCleanup(harness.end, subprocess.Popen(command, stderr=subprocess.DEVNULL, **options))

    def startDesktop(self, width, height):
        reading, writing = os.pipe()
        self.addCleanup(os.environ.update, DISPLAY=os.environ["DISPLAY"])
        self.serve("Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp",
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as answer:
            os.environ["DISPLAY"] = ":" + answer.readline().strip()
        configuration = self.home / "rc.xml"
        configuration.write_text(margins)
        self.serve("openbox", "--config-file", configuration)
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

    def testOpensOnTheFreeAreaAndClosesByKeys(self):
        for width, height, keys in ((1280, 800, "ctrl+q"), (1366, 768, "ctrl+w"), (1280, 720, "ctrl+q"),
                                    (1024, 600, "ctrl+w")):
            with self.subTest(width=width, height=height):
                self.startDesktop(width, height)
                self.start()
                self.until(lambda: self.edges()[3] == height - panel, lambda: f"the frame's edges are {self.edges()}")
                self.assertGreaterEqual(min(self.edges()), 0)
                self.openSheet()
                key(keys)
                self.assertEqual(self.process.wait(harness.patience), 0)
            self.doCleanups()
            self.setUp()


main()
