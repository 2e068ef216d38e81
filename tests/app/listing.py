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
            self.until(lambda: clipboard() == "287082")
        row = self.row("Acme", "287 082", "1s")
        xdotool("mousemove", row.left + 60, row.top + row.height - 30, "click", "--repeat", 2, "--delay", 40, 1)
        self.setClock(1111111109)
        self.row("Acme", "081 804")  # the selection stays through ticks
        for keys, code in (("ctrl+c", "081 804"), ("ctrl+Insert", "081 804"), ("Left ctrl+c", "081 804"),
                           ("shift+Left ctrl+c", "081 80")):
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

    def testSwipesFromRightToLeft(self):
        self.start("-reverse")
        for issuer in ("Acme", "Brim", "Cole"):
            self.add(f"otpauth://totp/{issuer}:x?secret={secret}")
        self.swipe("Acme", 150)
        self.still("Delete")
        self.inRow("Acme", "Delete")
        self.setClock(1111111109)
        for issuer in ("Acme", "Brim", "Cole"):
            self.row(issuer, "081 804")  # ticks while a row is open
        self.find("Delete")

        self.swipe("Brim", self.row("Brim").width - 32)  # all the way: opens, closes the other, deletes nothing
        self.inRow("Brim", "Delete")
        self.until(lambda: self.texts().count("Delete") == 1)
        self.assertEqual(self.issuers(), ["Acme", "Brim", "Cole"])
        self.still("Delete").click()
        self.until(lambda: self.issuers() == ["Acme", "Cole"])
        self.gone("Delete")

        self.swipe("Cole", 150)
        self.still("Delete")
        cole = self.row("Cole")
        click(cole.x, cole.top + 300)
        self.gone("Delete")
        self.assertEqual(self.issuers(), ["Acme", "Cole"])
        row, copy = self.row("Acme", "081 804"), self.inRow("Acme", "Copy code")
        self.assertLess(copy.x, row.x)
        self.assertLess(self.find("Add token").x, row.x)
        self.openSheet()
        self.assertGreater(self.still("Cancel").x, self.find("Save").x)

    def swipe(self, issuer, distance):
        """Swipes a row from its trailing edge, starting on the button beside its code."""
        row = self.row(issuer)
        y = row.top + row.height - 30
        drag(30, y, 30 + distance, y)

    def issuers(self):
        return [row.text.split(", ")[0] for row in self.rows()]

main()
