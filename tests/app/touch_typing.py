"""Typing on an on-screen keyboard, which comes over the lower part of a low window."""

import session
from harness import WindowTest, click, key, main, pixels, xdotool

width, height = 400, 520
session.screen = f"{width}x{height}"


class TouchTypingTest(WindowTest):
    # The keyboard misses dictionaries, and the pictures on its keys.
    othersSay = WindowTest.othersSay + ("qt.virtualkeyboard.", "qrc:/qt-project.org/imports/QtQuick/VirtualKeyboard/")

    def environment(self, home):
        return {**super().environment(home), "QT_IM_MODULE": "qtvirtualkeyboard"}

    def keyboardTop(self):
        """Where the dark keyboard begins, once it is up."""
        light = [y for y, colour in enumerate(pixels(1, height, 1, 0)) if max(colour) > 64]
        return light[-1] + 1 if light and light[-1] < height - 100 else None

    def testFieldIsInSight(self):
        self.start()
        xdotool("windowmove", "--sync", self.window, 0, 0)
        xdotool("windowsize", self.window, width, height)
        self.until(lambda: self.find("Add token").left > width - 100)
        self.openSheet()
        top = self.until(self.keyboardTop)
        bar = self.still("Cancel")
        self.assertGreaterEqual(self.still("Import").top, bar.top + bar.height, "nothing was covered")

        self.find("Issuer").click()
        for name in ("Issuer", "Account", "Base32 secret"):
            field = self.until(lambda: next((e for e in [self.still(name)]
                                             if e.focused and e.top + e.height <= top), None))
            click(width // 20, top + 15)  # the first key of the upper row
            self.until(lambda: self.find(name).length() == 1, lambda: f"nothing typed into {field.text!r}")
            key("Tab")


main()
