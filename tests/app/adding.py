"""Adding tokens through the sheet: by URI, by hand, by pointer and by keyboard."""

from harness import WindowTest, clipboard, drag, key, main, secret, setClipboard, typeText

secretField = "Base32 secret"
sha256Key = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZA"


class AddingTest(WindowTest):
    def testByPastedURI(self):
        self.start()
        self.find("No tokens yet")
        self.openSheet()
        heights = set()
        for end in ("", "\n"):
            self.fill("otpauth:// URI", f"otpauth://totp/Acme:alice?secret={sha256Key}&algorithm=SHA256&digits=8{end}")
            field = self.still("otpauth:// URI")
            heights.add(field.height)
        self.assertEqual(len(heights), 1, heights)
        setClipboard("selected elsewhere", "primary")
        drag(field.left + 3, field.y, field.left + field.width - 3, field.y)
        self.until(lambda: clipboard(selection="primary") == "",
                   lambda: f"a middle click pastes {clipboard(selection='primary')!r}")
        self.find("Import URI").click()
        self.gone("Cancel")
        self.row("Acme", "alice", "46119246", "1s")
        self.assertNotIn("No tokens yet", self.texts())

        self.setClock(1111111105)
        self.row("Acme", "68084774", "5s")
        self.openSheet()
        self.setClock(2000000000)
        title = self.find("Add token", lambda element: element.role == "heading")
        drag(title.x, title.y, title.x, title.y + 500)
        self.gone("Cancel")
        self.row("Acme", "90698825")

    def testByKeyboard(self):
        self.start()
        self.tabTo("Add token")
        key("space")
        self.until(lambda: self.find("otpauth:// URI").focused)
        typeText(f"otpauth://hotp/Acme:bob?secret={secret}&counter=7")
        self.tabTo("Import URI")
        key("Return")
        self.row("Acme", "162 583")
        self.until(lambda: self.find("Add token").focused)
        self.tabTo("Next")
        key("space")
        self.row("Acme", "399 871")
        key("ctrl+n")
        self.until(lambda: self.find("otpauth:// URI").focused)
        key("Escape")
        self.gone("Cancel")
        self.until(lambda: self.find("Next").focused)
        key("Down")
        self.until(lambda: self.row("Acme").focused)
        key("Return")
        self.until(lambda: clipboard() == "399871")
        key("Delete", "Return")
        self.until(lambda: self.find("Add token").focused)
        self.find("No tokens yet")

    def tabTo(self, name):
        """Presses Tab until the focus has come to an element."""
        for _ in range(20):
            if self.find(name).focused:
                return
            key("Tab")
        self.fail(f"Tab does not lead to {name!r}")

    def testByHandOnAFreshSheet(self):
        self.start()
        self.openSheet()
        for field in ("Issuer", "Account", secretField):
            self.fill(field, "x" * 40_000)
            self.until(lambda: self.find(field).length() == 40_000, lambda: f"{field} is cut")
        self.fill(secretField, "====")
        self.find("Save").click()
        self.find("The token secret is not valid Base32.")
        self.stepUp("Digits: ")
        self.find("Digits: 7")
        self.still("Cancel").click()
        self.gone("Cancel")
        self.find("No tokens yet")

        self.openSheet()
        for button in ("Import URI", "Save"):
            self.assertFalse(self.find(button).enabled)
            self.find(button).click()  # brings no message
        self.find("Issuer").click()
        typeText("  Acme Inc ")
        self.assertNotIn("alert", [element.role for element in self.elements()])
        for field in ("otpauth:// URI", "Account", secretField):
            self.assertEqual(self.find(field).length(), 0, field)
        self.find(secretField).click()
        typeText(" ".join([secret[:16].lower()] * 3) + "geza")
        self.find("Algorithm").click()
        self.still("SHA512")
        key("Down", "Return")
        self.gone("SHA512")
        self.find("Digits: 6")
        self.stepUp("Period: ")
        self.find("Period: 35s")
        self.assertNotIn("gezd", " ".join(self.texts()))
        self.find("Save").click()
        self.gone("Cancel")
        self.row("Acme Inc", "Account", "119 246", "11s")

    def stepUp(self, label):
        """Presses the "+" of the stepper that a label names."""
        row = self.until(lambda: next((e for e in self.elements() if e.text.startswith(label)), None))
        self.find("Increment", lambda e: abs(e.y - row.y) < 30).click()


main()
