"""The list: codes copied, counters advanced, rows swiped and deleted, everything found again."""

import subprocess

import harness
from harness import WindowTest, clipboard, click, drag, key, main, setClipboard, xdotool

secret = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ"


class ListTest(WindowTest):
    def testCopyAndNext(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        self.add(f"otpauth://hotp/Brim:bob?secret={secret}&counter=1")
        for issuer, code in (("Acme", "287082"), ("Brim", "287082")):
            setClipboard("")
            self.ofRow(issuer, "Copy code").click()
            self.ofRow(issuer, "Copied")
            self.assertEqual(clipboard(), code)
            self.assertEqual(clipboard("x-kde-passwordManagerHint"), "secret")
            self.ofRow(issuer, "Copy code")
        code = self.ofRow("Acme", "287 082")
        xdotool("mousemove", code.x, code.y, "click", "--repeat", 2, "--delay", 40, 1)
        self.setClock(1111111109)
        self.ofRow("Acme", "081 804")  # the selection stays through ticks
        setClipboard("")
        key("ctrl+c")
        self.until(lambda: clipboard() == "081 804")
        self.setClock(59)
        for code in ("359 152", "969 429"):
            self.find("Next").click()
            self.ofRow("Brim", code)
        self.ofRow("Acme", "287 082")
        self.restart()
        self.ofRow("Brim", "969 429")

    def ofRow(self, issuer, text):
        """Waits for a text in the row of an issuer: between its name and the next 80 points."""
        top = self.find(issuer).top
        return self.find(text, lambda element: 0 <= element.top - top < 80)

    def testSwipes(self):
        self.start()
        for issuer in ("Acme", "Brim", "Cole"):
            self.add(f"otpauth://totp/{issuer}:x?secret={secret}")
        self.width = self.find("Mirrowvale Auth", lambda element: element.role == "frame").width
        self.swipe("Acme", 150)
        delete = self.still("Delete")
        self.assertLess(abs(delete.y - self.find("Acme").y), 60)
        self.setClock(1111111109)
        self.until(lambda: self.texts().count("081 804") == 3)  # ticks while a row is open
        self.find("Delete")

        self.swipe("Brim", self.width - 32)  # all the way: opens, closes the other, deletes nothing
        self.until(lambda: [abs(element.y - self.find("Brim").y) < 60
                            for element in self.elements() if element.text == "Delete"] == [True])
        self.assertEqual(self.issuers("Acme", "Brim", "Cole"), ["Acme", "Brim", "Cole"])
        self.still("Delete").click()
        self.gone("Brim")
        self.gone("Delete")

        self.swipe("Cole", 150)
        self.still("Delete")
        cole = self.find("Cole")
        click(cole.x, cole.y + 300)
        self.gone("Delete")
        self.restart()
        self.assertEqual(self.issuers("Acme", "Brim", "Cole"), ["Acme", "Cole"])

    def swipe(self, issuer, distance):
        """Swipes a row from its trailing edge, starting on the button beside its code."""
        y = self.find(issuer).y + 40
        drag(self.width - 30, y, self.width - 30 - distance, y)

    def issuers(self, *among):
        self.until(lambda: set(self.texts()) & set(among))
        return [text for text in self.texts() if text in among]

    def testFoundAgainSortedAndVerbatim(self):
        added = {"Zeta": "Zeta", "beta": "beta", "%3Cb%3Ex%3C%2Fb%3E": "<b>x</b>", "": "Token",
                 "%251%20%25n": "%1 %n", "Alpha": "Alpha"}
        self.start()
        for issuer in added:
            self.add(f"otpauth://totp/%26amp%3B?secret={secret}&issuer={issuer}")
        shown = list(added.values())
        self.assertEqual(self.issuers(*shown), shown)
        self.assertEqual(self.texts().count("&amp;"), len(shown))
        self.restart()
        self.assertEqual(self.issuers(*shown), ["%1 %n", "<b>x</b>", "Alpha", "beta", "Token", "Zeta"])

    def testSecondStartBringsTheFirstUp(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        other = subprocess.Popen([harness.application], env=self.environment(self.home / "other"))
        self.addCleanup(harness.end, other)
        self.until(lambda: self.windowOf(other) == self.windowInFront())  # another user's, with a list of its own

        second = subprocess.Popen([harness.application], env=self.environment(self.home))
        self.addCleanup(harness.end, second)
        self.assertEqual(second.wait(harness.patience), 0)
        self.until(lambda: self.window == self.windowInFront() == xdotool("getwindowfocus"))

        self.process.kill()
        self.restart()  # what a killed process held is free again
        self.find("Acme")

    def windowInFront(self):
        return xdotool("mousemove", 100, 300, "getmouselocation", "--shell").partition("WINDOW=")[2].split()[0]


if __name__ == "__main__":
    main()
