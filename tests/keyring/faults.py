"""The credential store over keyrings that differ, fail, forget and go away, as a scripted service plays them."""

import itertools
import json
import select
import shutil
import signal
import sys

import harness
from harness import Fake, attributes

notAvailable, locked, cancelled, inputOutput, noRight, noMemory = (
    f"Keychain operation failed with status {status}." for status in (-25291, -25308, -128, -36, -61, -108))
stored = {"login": {"attributes": attributes, "data": "[]"}}
sealed = ["app.mirrowvale.authenticator.tokens_vault.sealed"]
inKeyring, nowhere = (["keyring\n"], []), ([], [])


class FaultTest(harness.KeyringTest):
    def startOver(self):
        self.doCleanups()
        self.setUp()

    def forgetAll(self):
        shutil.rmtree(self.home / ".local", ignore_errors=True)

    def create(self, failure=""):
        """Saves an empty list."""
        self.assertEqual(self.probe()("append 0 A"), "0 sorted " + failure)

    def assertOneItem(self, fake):
        self.assertEqual([(item["collection"], item["label"]) for item in fake.look().items],
                         [("login", "Mirrowvale Authenticator (vault)")])
        self.assertEqual(self.traces(), inKeyring)

    def testAKeyringOfAnyKindKeepsOneItem(self):
        for name, script in {
            "plain": {},
            "no default until one is made": {"default": False},
            "makes a default without asking": {"default": False, "prompts to create": False},
            "default not among the collections": {"lists default": False},
            "default under its alias alone": {"lists default": False, "shows default": False},
            "alias that is no object": {"has alias": False},
            "alias that is none even when made": {"default": False, "has alias": False},
            "locked": {"locked": {"login": True}},
            "locks after each use": {"locks again": True},
            "locks after each use, and hides what is locked": {"locks again": True, "hides": True},
            "drops the schema's name": {"keeps schema": False},
        }.items():
            with self.subTest(name):
                self.startOver()
                fake = Fake(self, **script)
                probe = self.probe()
                prompts = 0
                for command, count in (("append 1 A", 1), ("append 1 B", 2), ("list", 2)):
                    self.assertEqual(probe(command), f"{count} sorted ")
                    self.assertLessEqual(fake.look().prompts, prompts + (2 if "locks again" in script else 1))
                    prompts = fake.prompts
                self.assertOneItem(fake)
                self.assertEqual(fake.collections, ["/org/freedesktop/secrets/collection/login"])
                self.assertEqual(self.probe()("list"), "2 sorted ")

    def testAServiceThatTheBusStartsMayAsk(self):
        script = json.dumps({"items": stored, "locked": {"login": True}})
        self.bus.end()  # a running one learns of new services when it comes to it
        (self.home / "services/org.freedesktop.secrets.service").write_text(
            "[D-BUS Service]\nName=org.freedesktop.secrets\n"
            f"Exec={sys.executable} {harness.folder}/fake_secret_service.py '{script}'\n")
        self.startBus()
        for _ in range(5):  # the bus goes on starting it when the program has given up
            answer = self.probe()("list")
            if not answer.endswith(notAvailable):
                break
        self.assertEqual(answer, "0 sorted ")

    def testOfSeveralItemsTheLastChangedIsUsed(self):
        other = {**attributes, "account": "other"}
        fake = Fake(self, items={"old": {"attributes": attributes, "data": "0"},
                                 "new": {"attributes": attributes, "data": "[]", "changed": 1 << 39},
                                 "older": {"attributes": attributes, "data": "1"},
                                 "newest": {"attributes": other, "data": "2", "changed": 1 << 40}})
        self.assertEqual(self.probe()("append 1 A"), "1 sorted ")
        self.assertEqual([item["data"] for item in fake.look().items], ["0", fake.items[1]["data"], "1", "2"])
        self.assertEqual(self.probe()("list"), "1 sorted ")

    def testAFailedCreationLeavesNothing(self):
        for script, answer in (
            ({"default": False, "prompt": "dismiss"}, cancelled),
            ({"locked": {"login": True}, "prompt": "dismiss"}, cancelled),
            ({"forgets": ["CreateItem"]}, inputOutput),
            ({"fails": {"CreateItem": "org.freedesktop.DBus.Error.AccessDenied"}}, noRight),
            ({"fails": {"CreateItem": "org.freedesktop.Secret.Error.NoSession"}}, inputOutput),
        ):
            with self.subTest(script):
                self.startOver()
                fake = Fake(self, **script)
                self.create(answer)
                self.assertEqual((self.traces(), fake.look().items), (nowhere, []))
                self.assertLessEqual(fake.prompts, 1)
                fake.tell(prompt="grant", forgets=[], fails={})
                self.create()
                self.assertOneItem(fake)

    def testEachFailureHasItsStatusAndLosesNothing(self):
        secret, bus = "org.freedesktop.Secret.Error.", "org.freedesktop.DBus.Error."
        for error, status in (
            (secret + "IsLocked", locked), (secret + "NoSuchObject", inputOutput),
            (bus + "UnknownMethod", inputOutput), (bus + "ServiceUnknown", notAvailable),
            (bus + "AccessDenied", noRight), (bus + "LimitsExceeded", noMemory), ("exit", notAvailable),
        ):
            self.startOver()
            fake = Fake(self, items=stored)
            for method in ("OpenSession", "SearchItems", "GetSecret", "SetSecret", "Unlock",
                           *(["Get"] if error == "exit" else [])):
                with self.subTest(error=error, method=method):
                    self.forgetAll()
                    fake.tell(fails={}, data={"vault": "[]"}, locked={"login": False})
                    probe = self.probe()
                    probe("list")
                    fake.tell(locked={"login": method == "Unlock"}, fails={method: error})
                    self.assertEqual((probe("list"), probe("append 1 A")),
                                     ("0 sorted " + ("" if method == "SetSecret" else status), "1 sorted " + status))
                    if error == "exit":
                        fake = Fake(self, items=stored)
                    fake.tell(fails={}, locked={"login": False})
                    self.assertEqual(([item["data"] for item in fake.look().items], self.traces()),
                                     (["[]"], (["keyring\n"], sealed)))
                    self.assertEqual(self.probe()("list"), "1 sorted ")

    def testASaveThatTheServiceForgetsIsNoSuccess(self):
        fake = Fake(self, items=stored, forgets=["SetSecret"])
        self.assertEqual(self.probe()("append 1 A"), "1 sorted " + inputOutput)
        fake.end()
        Fake(self, forgets=["data"])
        self.forgetAll()
        self.create(inputOutput)

    def testAnItemThatLocksBeforeItCanBeComparedIsNotReplaced(self):
        fake = Fake(self)
        probe = self.probe()
        probe("append 1 A")
        fake.tell(data={"vault": "[ ]"}, fails={"GetSecret": "org.freedesktop.Secret.Error.IsLocked"})
        self.assertEqual((probe("append 1 B"), [item["data"] for item in fake.look().items]),
                         ("2 sorted " + locked, ["[ ]"]))

    def testDataOfAnotherKindIsSetAsideUnchanged(self):
        fake, damages = Fake(self, items=stored), ["\0\xff[\n\x80", "", "\0\xff[\n\x80"]
        for damage in damages:
            fake.tell(data={"vault": damage})
            probe = self.probe()
            self.assertRegex(probe("list"), "^0 sorted .")
            self.assertEqual((probe("append 1 A"), probe("append 1 B")), ("1 sorted ", "2 sorted "))
            self.assertEqual(self.probe()("list"), "2 sorted ")
        self.assertEqual([item["attributes"]["account"] for item in fake.look().items],
                         ["vault", "vault.unreadable-1", "vault.unreadable-2", "vault.unreadable-3"])
        self.assertEqual([item["data"] for item in fake.items[1:]], damages)

    def testWhatIsAddedWhileTheKeyringIsAwayIsKept(self):
        """Gone, locked, hidden or frozen, back in the same run or for the next: no token is lost or shown twice."""
        def lock(**more):
            return lambda fake: fake.tell(locked={"login": True}, prompt="dismiss", **more)

        for name, leave, failure in (
            ("locked", lock(), cancelled), ("hidden", lock(hides=True), cancelled),
            ("silent when asked to ask", lock(silent=["Prompt"]), notAvailable),
            ("frozen", lambda fake: fake.process.send_signal(signal.SIGSTOP), notAvailable),
            ("gone", Fake.end, notAvailable), ("gone with its bus", lambda fake: self.bus.end(), notAvailable),
            ("gone, with the state folder", lambda fake: (fake.end(), shutil.rmtree(self.record.parent)), ""),
        ):
            with self.subTest(name):
                self.startOver()
                fake = Fake(self)
                self.probe()("append 3 A")
                item, = fake.look().items
                leave(fake)
                probe = self.probe()
                self.assertEqual((probe("list"), probe("append 1 B")), ("0 sorted " + failure, "1 sorted " + failure))
                self.assertEqual(self.probe()("list"), "1 sorted " + failure)
                self.assertEqual(self.probe(DBUS_SESSION_BUS_ADDRESS="")("list"),
                                 "1 sorted " + (failure and notAvailable))
                fake = self.comeBack(fake, item)
                self.assertEqual(probe("append 1 C"), "2 sorted " + failure)
                self.assertEqual([item["data"] for item in fake.look().items], [item["data"]])
                probe = self.probe()
                self.assertEqual((probe("list"), probe("append 1 D")), ("5 sorted ", "6 sorted "))
                self.assertEqual((self.probe()("list"), self.traces()), ("6 sorted ", inKeyring))
                fake.tell(data={"vault": "[]"})  # all six were in the keyring, and nowhere else
                self.assertEqual(self.probe()("list"), "0 sorted ")

    def comeBack(self, fake, item):
        """A keyring that has an item, after it has frozen or was closed, or another one where it has gone."""
        fake.process.send_signal(signal.SIGCONT)
        if self.bus.process.returncode is not None:
            self.startBus()
        elif fake.process.returncode is None:
            return fake.tell(locked={"login": False}, silent=[], hides=False)
        return Fake(self, items={"login": {key: item[key] for key in ("attributes", "data")}})

    def testNotFoundIsSaidOnlyByAnOpenKeyring(self):
        granted, dismissed = "3 sorted ", "0 sorted " + cancelled
        rows = (("login", True, {}, granted), ("login", True, {"lists default": False}, granted),
                ("login", False, {"lists default": False, "shows default": False}, granted),
                ("login", False, {}, granted), ("login", False, {"prompt": "dismiss"}, dismissed),
                ("work", True, {}, granted), ("work", True, {"prompt": "dismiss"}, dismissed))
        for (collection, isRecorded, script, answer), hides in itertools.product(rows, (True, "search")):
            with self.subTest(collection=collection, isRecorded=isRecorded, script=script, hides=hides):
                self.startOver()
                fake = Fake(self)
                self.probe()("append 3 A")
                data = fake.look().items[0]["data"]
                fake.end()
                fake = Fake(self, items={collection: {"attributes": attributes, "data": data}}, **script)
                if not isRecorded:
                    self.record.unlink()
                fake.tell(locked={collection: True}, hides=hides)
                probe = self.probe()
                self.assertEqual(probe("list"), answer)
                if answer == dismissed:
                    probe = self.probe()
                fake.tell(prompt="grant", locked={collection: True})  # between a load and a save, too
                self.assertEqual((probe("append 1 B"), len(fake.look().items)), ("4 sorted ", 1))

    def testWhatIsAddedSurvivesTheEndOfTheSessionDuringItsPrompt(self):
        fake = Fake(self)
        probe = self.probe()
        probe("append 3 A")
        prompts = fake.tell(locked={"login": True}, prompt="wait").prompts
        probe.send("append 1 B")
        while fake.look().prompts == prompts and not select.select([probe.process.stdout], [], [], 0.01)[0]:
            pass
        harness.Talk.end(probe)
        fake.tell(prompt="grant")
        self.assertEqual((self.probe()("list"), self.traces()), ("4 sorted ", inKeyring))

    def testWhatIsListedOutlivesAnItemThatHasGone(self):
        fake = Fake(self)
        probe = self.probe()
        probe("append 3 A")
        fake.end()
        Fake(self, **{"default": False, "prompt": "dismiss"})  # a new keyring, which asks for its password
        self.assertEqual(probe("append 1 B"), "4 unsorted " + cancelled)
        self.assertEqual(self.probe()("list"), "4 sorted ")

    def testWhatAnotherProcessHasChangedIsUnitedWithOurs(self):
        fake = Fake(self)
        for place in ({}, {"DBUS_SESSION_BUS_ADDRESS": ""}):  # the keyring, and the sealed files
            with self.subTest(place):
                one, two = self.probe(**place), self.probe(**place)
                self.assertEqual((one("list"), two("list"), one("append 1 B")), ("0 sorted ", "0 sorted ", "1 sorted "))
                self.assertEqual((two("append 1 C"), one("append 1 A")), ("2 unsorted ", "3 unsorted "))
                self.assertEqual((self.probe(**place)("list"), len(fake.look().items)), ("3 sorted ", 1))
                self.forgetAll()
        one = self.probe()
        one("list")
        fake.tell(locked={"login": True}, prompt="dismiss")
        self.assertEqual(self.probe()("append 1 D"), "1 sorted " + cancelled)  # kept in the sealed files
        fake.tell(locked={"login": False})
        self.assertEqual((one("append 0 A"), self.traces()), ("4 sorted ", inKeyring))

    def testALockedKeyringAsksOnce(self):
        fake = Fake(self, items=stored)
        probe = self.probe()
        probe("list")
        for prompt, command, answer in (("grant", "append 1 A", "1 sorted "),
                                        ("dismiss", "append 1 B", "2 sorted " + cancelled),
                                        ("dismiss, then grant", "append 1 C", "3 sorted " + cancelled),
                                        ("dismiss", "list", "2 sorted " + cancelled)):
            prompts = fake.tell(locked={"login": True}, prompt=prompt).prompts
            self.assertEqual(probe(command), answer)
            self.assertEqual(fake.look().prompts, prompts + 1)
        fake.tell(locked={"login": True}, prompt="exit")
        self.assertEqual([probe("list") for _ in range(2)], ["2 sorted " + notAvailable] * 2)

    def testNoBusIsStarted(self):
        """A launcher of buses that stands in the program's way is never called."""
        launcher, called, runtime = (self.home / name for name in ("bin/dbus-launch", "called", "other"))
        launcher.parent.mkdir()
        launcher.write_text(f"#!/bin/sh\ntouch {called}\nexit 1\n")
        launcher.chmod(0o755)
        runtime.mkdir()
        (runtime / "bus").write_text("")
        self.environment.update(PATH=f"{launcher.parent}:{self.environment['PATH']}", DISPLAY=":9")
        for address, folder in (("", "/nonexistent"), (None, "/nonexistent"), (None, runtime), ("autolaunch:", runtime),
                                ("unix:path=/nonexistent;autolaunch:", runtime)):
            with self.subTest(address=address, folder=folder):
                self.environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
                if address is not None:
                    self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
                self.assertEqual(self.probe(XDG_RUNTIME_DIR=str(folder))("list"), "0 sorted ")
                self.assertFalse(called.exists())


harness.main()
