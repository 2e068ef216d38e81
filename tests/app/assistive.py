"""The application in the hands of assistive technology alone: no pointer, no key."""

from harness import Atspi, WindowTest, clipboard, main, secret
from session import GLib


class AssistiveTest(WindowTest):
    def setUp(self):
        super().setUp()
        self.heard = []  # the type of each event, the role and the name of its source, the text it carries
        self.listener = Atspi.EventListener.new(self.hear)
        for kind in ("object:state-changed:showing", "object:property-change", "object:text-changed",
                     "object:text-caret-moved", "focus:"):
            self.listener.register(kind)

    def hear(self, event):
        try:
            source = (event.source.get_role_name(), event.source.get_name() or "")
        except GLib.Error:
            source = ("", "")  # gone already
        self.heard.append((event.type, *source, str(event.any_data)))

    def listen(self, condition):
        """Waits until the events heard so far fulfil a condition."""
        def heard():
            while GLib.MainContext.default().iteration(False):
                pass
            return condition(self.heard)
        self.until(heard, lambda: f"heard only {self.heard}")

    def announced(self, text):
        self.listen(lambda heard: any(kind == "object:state-changed:showing" and role == "alert" and name == text
                                      for kind, role, name, _ in heard))
        self.heard.clear()

    def act(self, element, action="Press"):
        """Has an element do one of the actions that it offers."""
        names = [Atspi.Action.get_action_name(element.accessible, index)
                 for index in range(Atspi.Action.get_n_actions(element.accessible))]
        self.assertIn(action, names)
        Atspi.Action.do_action(element.accessible, names.index(action))

    def write(self, name, text):
        field = self.find(name)
        Atspi.EditableText.set_text_contents(field.accessible, text)
        self.until(lambda: field.length() == len(text))

    def outsideOfTheSheet(self):
        """The roles of all that can be reached, shown or not, without the sheet and what is in it."""
        return [accessible.get_role_name() for accessible in
                self.accessibles(enters=lambda accessible: accessible.get_role_name() != "dialog")]

    def testEverything(self):
        self.start()
        self.act(self.find("Add token"))
        self.until(lambda: self.find("otpauth:// URI").focused)
        for _ in range(2):  # said again when it happens again
            self.write("otpauth:// URI", "otpauth://push/x?secret=GE")
            self.act(self.find("Import URI"))
            self.announced("Only TOTP and HOTP otpauth URIs are supported.")
        self.write("otpauth:// URI", f"otpauth://hotp/Brim:bob?secret={secret}&counter=1")
        self.act(self.find("Import URI"))
        self.gone("Cancel")
        self.act(self.row("Brim", "bob", "287 082"), "Next")
        self.act(self.row("Brim", "359 152"), "Copy code")
        self.until(lambda: clipboard() == "359152")
        self.announced("Copied")

        self.act(self.find("Add token"))
        self.until(lambda: self.find("otpauth:// URI").focused)
        self.until(lambda: self.outsideOfTheSheet() == ["application", "frame", "panel"])
        self.listen(lambda heard: any(kind == "object:state-changed:showing" and role == "panel"
                                      for kind, role, _, _ in heard))
        self.write("Issuer", "Acme, \u05d0")
        for field in ("Account", "Base32 secret"):
            self.write(field, secret)
        masked = self.find("Base32 secret")
        self.assertEqual(masked.role, "password text")
        self.assertNotIn("G", Atspi.Text.get_text(masked.accessible, 0, -1))
        self.act(self.find("Increment", lambda element: element.accessible.get_description() == "Digits: 6"))
        self.find("Digits: 7")
        picker = self.find("Algorithm")
        self.assertEqual(picker.accessible.get_description(), "SHA1")
        self.act(picker)
        self.act(self.find("SHA256"))
        self.until(lambda: picker.accessible.get_description() == "SHA256")
        self.act(self.find("Save"))
        self.gone("Cancel")
        self.until(lambda: [row.text for row in self.rows()] == [
            "Brim, bob, 3 5 9 1 5 2", f"Acme, \u05d0, {secret}, 2 2 4 7 3 7 4, 1s"])
        self.act(self.rows()[0], "Delete")
        self.until(lambda: self.outsideOfTheSheet().count("list item") == 1)

    def testNothingOfTheSecretAndNoTickButANewCodeIsHeard(self):
        self.start()
        self.add(f"otpauth://totp/Acme:alice?secret={secret}")
        self.until(lambda: Atspi.Component.grab_focus(self.row("Acme").accessible) and self.row("Acme").focused)
        self.listen(lambda heard: heard)
        self.heard.clear()
        for second, code in ((1111111109, "081 804"), (1234567890, "005 924"), (59, "287 082")):
            self.setClock(second)
            self.row("Acme", code)
        self.act(self.find("Add token"))
        self.listen(lambda heard: any(name == "otpauth:// URI" for _, _, name, _ in heard))
        self.assertEqual([event[0] for event in self.heard if event[1] == "list item"
                          and event[0].startswith("object:property-change")], ["object:property-change:accessible-name"] * 3)
        self.write("Base32 secret", secret)
        self.act(self.find("Base32 secret"), "SetFocus")
        self.listen(lambda heard: any(role == "password text" for _, role, _, _ in heard))
        self.assertNotIn(secret[:4], str(self.heard))


main()
