"""The application on a Wayland compositor, which stands in a window of the virtual display."""

import os
import subprocess

import harness
from harness import WindowTest, key, main, secret, typeText


class WaylandTest(WindowTest):
    def environment(self, home):
        environment = {**super().environment(home), "QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": self.socket}
        del environment["DISPLAY"]
        return environment

    def testAddingAndDeleting(self):
        self.socket = f"{self.home}/compositor"
        compositor = subprocess.Popen(["weston", "--backend=x11-backend.so", "--shell=kiosk-shell.so", "--no-config",
                                       f"--socket={self.socket}", "--width=390", "--height=844", "--idle-time=0"],
                                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(harness.end, compositor)
        self.until(lambda: os.path.exists(self.socket))
        self.process = self.launch(self.environment(self.home))
        self.find("Add token")
        screen = self.until(lambda: harness.xdotool("search", "--onlyvisible", "--class", "weston").split()[-1])
        self.until(lambda: self.comesToFront(screen), lambda: "the window does not get the keyboard")
        key("ctrl+n")
        self.until(lambda: self.find("otpauth:// URI").focused)
        typeText(f"otpauth://totp/Acme:alice?secret={secret}")
        key("Tab", "Return")
        self.gone("Cancel")
        self.setClock(1111111109)
        self.row("Acme", "alice", "081 804")
        key("Down")
        self.until(lambda: self.row("Acme").focused)
        key("Delete", "Return")
        self.find("No tokens yet")
        self.stop()  # before its compositor

    def comesToFront(self, screen):
        """Turns the display's keyboard to the compositor, and the compositor's to the window, until it has it."""
        harness.xdotool("windowfocus", screen)
        harness.click(100, 300)  # on nothing
        return self.find("Mirrowvale Auth", lambda element: element.role == "frame").active


if __name__ == "__main__":
    main()
