"""The list: codes copied, counters advanced, rows swiped and deleted, everything found again."""

from harness import WindowTest, clipboard, click, drag, key, main, secret, setClipboard, typeText, xdotool


class ListTest(WindowTest):
    def testCopyAndNext(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        markup = "<b>%1 %n</b>"  # to be read as it is
        self.add(f"otpauth://hotp/%26amp%3B?secret={secret}&counter=1&issuer=%3Cb%3E%251%20%25n%3C%2Fb%3E")
        for issuer in ("Acme", markup):
            setClipboard("")
            self.inRow(issuer, "Copy code").click()
            self.inRow(issuer, "Copied")
            self.assertEqual(clipboard(), "287082")
            self.inRow(issuer, "Copy code")
        row = self.row("Acme", "287 082", "1s")
        xdotool("mousemove", row.left + 60, row.top + row.height - 30, "click", "--repeat", 2, "--delay", 40, 1)
        self.setClock(1111111109)
        self.row("Acme", "081 804")  # the selection stays through ticks
        for keys, code in (("ctrl+c", "081 804"), ("ctrl+Insert", "081 804"), ("shift+Left ctrl+c", "081 80")):
            setClipboard("")
            key(*keys.split())
            self.until(lambda: clipboard() == code)
            self.assertEqual(clipboard("x-kde-passwordManagerHint"), "secret")
        self.assertEqual(clipboard(selection="primary"), "")
        self.setClock(59)
        self.find("Next").click()
        self.row(markup, "&amp;", "359 152")
        self.assertEqual(self.issuers(), ["Acme", markup])
        self.restart()
        self.row(markup, "&amp;", "359 152")
        self.assertEqual(self.issuers(), [markup, "Acme"])  # sorted

    def testSwipes(self):
        self.swipeInTurn()

    def testSwipesFromRightToLeft(self):
        self.language = "ar"
        self.swipeInTurn()
        row, copy = self.row("Acme", "081 804"), self.inRow("Acme", "Copy code")
        self.assertLess(copy.x, row.x)
        self.assertLess(self.find("Add token").x, row.x)
        self.openSheet()
        self.assertGreater(self.still("Cancel").x, self.find("Save").x)

    def swipeInTurn(self):
        self.start()
        for issuer in ("Acme", "Brim", "Cole"):
            self.add(f"otpauth://totp/{issuer}:x?secret={secret}")
        self.width = self.find("Mirrowvale Auth", lambda element: element.role == "frame").width
        self.swipe("Acme", 150)
        self.still("Delete")
        self.inRow("Acme", "Delete")
        self.setClock(1111111109)
        for issuer in ("Acme", "Brim", "Cole"):
            self.row(issuer, "081 804")  # ticks while a row is open
        self.find("Delete")

        self.swipe("Brim", self.width - 32)  # all the way: opens, closes the other, deletes nothing
        self.inRow("Brim", "Delete")
        self.until(lambda: self.texts().count(self.title("Delete")) == 1)
        self.assertEqual(self.issuers(), ["Acme", "Brim", "Cole"])
        self.still("Delete").click()
        self.until(lambda: self.issuers() == ["Acme", "Cole"])
        self.gone("Delete")

        self.swipe("Cole", 150)
        self.still("Delete")
        cole = self.row("Cole")
        click(cole.x, cole.top + 300)
        self.gone("Delete")
        self.restart()
        self.assertEqual(self.issuers(), ["Acme", "Cole"])

    def swipe(self, issuer, distance):
        """Swipes a row from its trailing edge, starting on the button beside its code."""
        row = self.row(issuer)
        start, end = self.width - 30, self.width - 30 - distance
        if self.language:
            start, end = self.width - start, self.width - end
        y = row.top + row.height - 30
        drag(start, y, end, y)

    def issuers(self):
        return [row.text.split(", ")[0] for row in self.rows()]

    def testKeyboard(self):
        self.start()
        self.tabTo("Add token")
        key("space")
        self.until(lambda: self.find("otpauth:// URI").focused)
        typeText(f"otpauth://hotp/Acme:x?secret={secret}&counter=7")
        self.tabTo("Import URI")
        key("Return")
        self.row("Acme", "162 583")
        self.tabTo("Next")
        key("space")
        self.row("Acme", "399 871")
        for issuer in ("Brim", "Cole"):
            self.openByKey()
            setClipboard(f"otpauth://totp/{issuer}:x?secret={secret}")
            key("ctrl+v", "Tab", "Return")
            self.gone("Cancel")
        self.openByKey()
        key("Escape")
        self.gone("Cancel")
        self.until(lambda: self.find("Next").focused)
        self.press("Down", "Brim")
        key("Return")
        self.until(lambda: clipboard() == "287082")
        key("Delete")
        self.until(lambda: self.inRow("Brim", "Delete").focused)
        key("Escape")
        self.gone("Delete")
        self.until(lambda: self.row("Brim").focused)
        self.assertEqual(self.issuers(), ["Acme", "Brim", "Cole"])
        key("Delete")
        self.until(lambda: self.inRow("Brim", "Delete").focused)
        key("space")
        self.until(lambda: self.issuers() == ["Acme", "Cole"])
        self.until(lambda: self.row("Cole").focused)
        self.press("Home", "Acme")
        self.press("End", "Cole")
        for issuer in ("Cole", "Acme"):
            self.until(lambda: self.row(issuer).focused)
            key("Delete", "Return")
            self.until(lambda: issuer not in self.issuers())
        self.until(lambda: self.find("Add token").focused)

    def openByKey(self):
        key("ctrl+n")
        self.until(lambda: self.find("otpauth:// URI").focused)

    def tabTo(self, name):
        """Presses Tab until the focus has come to an element."""
        for _ in range(20):
            if self.find(name).focused:
                return
            key("Tab")
        self.fail(f"Tab does not lead to {name!r}")

    def press(self, name, issuer):
        """Presses a key that moves the focus to a row."""
        key(name)
        self.until(lambda: self.row(issuer).focused, lambda: f"{name} does not lead to {issuer}")


if __name__ == "__main__":
    main()
