"""Adding tokens through the sheet: by URI, by hand, by pointer and by keyboard."""

from harness import WindowTest, clipboard, drag, key, main, secret, setClipboard, typeText

secretField = "Base32 secret"
sha256Key = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZA"


class AddingTest(WindowTest):
    def testByPastedURI(self):
        self.start()
        self.find("No tokens yet")
        self.openSheet()
        self.assertFalse(self.find("Import URI").enabled or self.find("Save").enabled)
        for field in ("Issuer", "Account", secretField):
            self.fill(field, "x" * 40_000)
            self.until(lambda: self.find(field).length() == 40_000, lambda: f"{field} is cut")
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
        key("ctrl+n")
        self.until(lambda: self.find("otpauth:// URI").focused)
        self.tabTo("Issuer")
        typeText("  Brim Inc ")
        self.tabTo(secretField)
        typeText(" ".join([secret[:16].lower()] * 3) + "geza")
        self.tabTo("Algorithm")
        key("space")
        self.still("SHA512")
        key("Down", "Return")
        self.tabTo("Save")
        key("Return")
        self.row("Brim Inc", "Account", "119 246", "1s")

    def tabTo(self, name):
        """Presses Tab until the focus has come to an element."""
        for _ in range(20):
            if self.find(name).focused:
                return
            key("Tab")
        self.fail(f"Tab does not lead to {name!r}")


main()
