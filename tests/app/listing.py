"""The list: codes copied, counters advanced, rows swiped and deleted, everything found again."""

from harness import WindowTest, clipboard, click, drag, key, main, secret, setClipboard, xdotool


class ListTest(WindowTest):
    def testCopyAndNext(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        self.add(f"otpauth://hotp/Brim:bob?secret={secret}&counter=1")
        for issuer, code in (("Acme", "287082"), ("Brim", "287082")):
            setClipboard("")
            self.inRow(issuer, "Copy code").click()
            self.inRow(issuer, "Copied")
            self.assertEqual(clipboard(), code)
            self.assertEqual(clipboard("x-kde-passwordManagerHint"), "secret")
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
        for code in ("359 152", "969 429"):
            self.find("Next").click()
            self.row("Brim", code)
        self.row("Acme", "287 082")
        self.restart()
        self.row("Brim", "969 429")

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
        for issuer in ("Acme", "Brim", "Cole"):
            self.add(f"otpauth://totp/{issuer}:x?secret={secret}")
        self.press("Down", "Acme")
        self.press("Down", "Brim")
        setClipboard("")
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
        self.press("Up", "Acme")
        key("ctrl+n")
        self.until(lambda: self.find("otpauth:// URI").focused)
        setClipboard(f"otpauth://totp/Dorn:x?secret={secret}")
        key("ctrl+v", "Tab", "Return")
        self.gone("Cancel")
        self.until(lambda: self.row("Acme").focused)
        self.press("End", "Dorn")
        for issuer in ("Dorn", "Cole", "Acme"):
            self.until(lambda: self.row(issuer).focused)
            key("Delete", "Return")
            self.until(lambda: issuer not in self.issuers())
        self.until(lambda: self.find("Add token").focused)

    def press(self, name, issuer):
        """Presses a key that moves the focus to a row."""
        key(name)
        self.until(lambda: self.row(issuer).focused, lambda: f"{name} does not lead to {issuer}")

    def testFoundAgainSortedAndVerbatim(self):
        added = {"Zeta": "Zeta", "beta": "beta", "%3Cb%3Ex%3C%2Fb%3E": "<b>x</b>", "": "Token",
                 "%251%20%25n": "%1 %n", "Alpha": "Alpha"}
        self.start()
        for issuer in added:
            self.add(f"otpauth://totp/%26amp%3B?secret={secret}&issuer={issuer}")
        for issuer in added.values():
            self.row(issuer, "&amp;")
        self.assertEqual(self.issuers(), list(added.values()))
        self.restart()
        self.assertEqual(self.issuers(), ["%1 %n", "<b>x</b>", "Alpha", "beta", "Token", "Zeta"])


if __name__ == "__main__":
    main()
