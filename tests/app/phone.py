"""The application in a phone's shell: its compositor stands in a window of the virtual display."""

import os
import pathlib
import subprocess
import time

import session
from harness import WindowTest, click, key, main, pixels, secret, typeText
from session import Gio, callBus

session.screen = "720x1440"
keyboard = "sm.puri.OSK0"  # what a shell's on-screen keyboard is called on the bus
fields = ("otpauth:// URI", "Issuer", "Account", "Base32 secret")


def callKeyboard(interface, method, arguments):
    return callBus(keyboard, "/sm/puri/OSK0", interface, method, arguments, Gio.DBusCallFlags.NO_AUTO_START)


class PhoneTest(WindowTest):
    def environment(self, home):
        environment = {**super().environment(home), "QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "wayland-0"}
        del environment["DISPLAY"]
        return environment

    def serve(self, *command, **variables):
        environment = {**self.environment(self.home), "LD_PRELOAD": "", "NO_AT_BRIDGE": "1", **variables}
        self.addCleanup(session.end, subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                                                       stderr=subprocess.DEVNULL))

    def startShell(self, width, height, scale, *programs):
        """@param width, height  of the screen in points, each as many pixels as the scale says"""
        self.width, self.height, self.scale = width, height, scale
        settings = self.home / ".config/glib-2.0/settings/keyfile"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text("[org/gnome/desktop/a11y/applications]\nscreen-keyboard-enabled=true\n")
        layout = self.home / "layout"
        layout.write_text("[core]\nxwayland=false\n"
                          f"[output:X11-1]\nmode = {width * scale}x{height * scale}\nscale = {scale}\n")
        self.serve("phoc", "-C", layout, DISPLAY=os.environ["DISPLAY"], WLR_BACKENDS="x11", WLR_RENDERER="pixman")
        self.until((self.home / "runtime" / "wayland-0").exists)
        for program in programs:
            self.serve(program, GSETTINGS_BACKEND="keyfile")
            self.until(lambda: self.isUp() is False)
        self.addCleanup(self.stop)  # before its compositor
        self.process = self.launch(self.environment(self.home))
        sizes = []

        def settled():
            element = self.find("Mirrowvale Auth", lambda element: element.role == "frame" and element.active
                                and 0 <= width - element.width < 10)  # as wide as the screen
            now, size = time.monotonic(), (element.width, element.height)
            if not sizes or sizes[-1][0] != size:  # a newer shell brings it in step by step
                sizes.append((size, now))
            return element if now - sizes[-1][1] > 0.7 else None
        window = self.until(settled)
        border = (width - window.width) // 2  # of the toolkit's frame, which is higher above
        self.left, self.top = border, height - border - window.height

    def press(self, x, y):
        click(x * self.scale, y * self.scale)

    def tap(self, name):
        element = self.still(name)
        self.press(self.left + element.x, self.top + element.y)

    def isUp(self):
        """Whether the shell says that the keyboard shows; None before there is one."""
        return callKeyboard("org.freedesktop.DBus.Properties", "Get", f"('{keyboard}', 'Visible')")[0]

    def keyboardTop(self):
        """Where the evenly coloured keyboard begins at its left edge."""
        colours = pixels(1, self.height * self.scale, 1, 0)
        return (1 + max((y for y, colour in enumerate(colours) if colour != colours[-1]), default=0)) / self.scale

    def inSight(self, name):
        """The keyboard's upper edge, once the field has focus and stands between the sheet's bar and that edge."""
        field, bar, edge = self.find(name), self.find("Cancel"), self.keyboardTop()
        above, below = self.top + field.top, self.top + field.top + field.height
        sees = self.isUp() and field.focused and self.top + bar.top + bar.height <= above and below <= edge
        return edge if sees else None

    def testTyping(self):
        for width, height, scale, margin in ((360, 720, 1, 0.05), (720, 360, 1, 0.14), (360, 720, 2, 0.05)):
            with self.subTest(width=width, height=height, scale=scale):
                self.startShell(width, height, scale, "squeekboard")
                self.tap("Add token")
                for name in fields:
                    edge = self.until(lambda: self.inSight(name), lambda: f"{name!r} is not in sight")
                    row = (height - edge) / 4
                    self.press(width * margin, edge + row / 2)  # its first key
                    self.until(lambda: self.find(name).length() == 1, lambda: f"nothing typed into {name!r}")
                    if name == fields[0]:
                        key("BackSpace")  # Enter would import it
                    self.press(width * (1 - margin), height - row / 2)  # its last key, Enter
                self.until(lambda: not self.isUp() and self.find("Algorithm").focused)
                self.tap(fields[-1])
                self.until(self.isUp)
                callKeyboard(keyboard, "SetVisible", "(false,)")
                self.until(lambda: not self.isUp())
                self.tap(fields[-1])  # put away by its user, wanted again
                self.until(lambda: self.inSight(fields[-1]))
                self.tap("Cancel")
                self.gone("Cancel")
                self.until(lambda: not self.isUp())
            self.doCleanups()
            self.setUp()

    def testNoKeyboardIsStarted(self):
        services = pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "dbus-1" / "services"
        mark = self.home / "started"
        (services / f"{keyboard}.service").write_text(f"[D-BUS Service]\nName={keyboard}\nExec=/bin/touch {mark}\n")
        callBus("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "ReloadConfig")
        self.startShell(480, 844, 1)
        self.tap("Add token")
        self.until(lambda: self.find(fields[0]).focused)
        typeText(f"otpauth://totp/Acme:alice?secret={secret}")
        key("Return")
        self.gone("Cancel")
        self.row("Acme", "alice")
        self.assertFalse(mark.exists())


main()
