"""The list: codes copied and selected, counters advanced."""

from harness import WindowTest, clipboard, key, main, secret, setClipboard, xdotool


class ListTest(WindowTest):
    def testCopyAndNext(self):
        self.start("-platform", "xcb")  # the toolkit's own options are taken
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
        self.find("Next").click()
        self.row(markup, "&amp;", "359 152")


main()
