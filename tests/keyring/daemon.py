"""The credential store over the keyring daemon of a desktop."""

import collections
import os
import pathlib
import random
import shutil
import signal
import subprocess

import gi
import harness
from harness import attributes, first, second

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

root = "/org/freedesktop/secrets"
unreachable = "Keychain operation failed with status -25291."


class DaemonTest(harness.KeyringTest):
    def setUp(self):
        super().setUp()
        self.connection = Gio.DBusConnection.new_for_address_sync(
            self.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self.daemon = None
        self.addCleanup(self.endDaemon)

    def call(self, path, interface, method, kinds, *parameters):
        return self.connection.call_sync(
            "org.freedesktop.secrets", path, interface, method, GLib.Variant(kinds, parameters), None,
            Gio.DBusCallFlags.NONE, harness.patience * 1000, None).unpack()

    def startDaemon(self, *options):
        """Starts the daemon and waits until it stands on the bus."""
        loop = GLib.MainLoop()
        watch = Gio.bus_watch_name_on_connection(self.connection, "org.freedesktop.secrets",
                                                 Gio.BusNameWatcherFlags.NONE, lambda *_: loop.quit(), None)
        self.daemon = subprocess.Popen(["gnome-keyring-daemon", "--foreground", "--components=secrets", *options],
                                       env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
        self.daemon.stdin.write(b"password")
        self.daemon.stdin.close()
        loop.run()
        Gio.bus_unwatch_name(watch)

    def endDaemon(self):
        if self.daemon:
            self.daemon.kill()
            self.daemon.wait()
            self.daemon = None

    def items(self):
        return self.call(root, "org.freedesktop.Secret.Service", "SearchItems", "(a{ss})", attributes)[0]

    def testWithoutATrustedModuleTheKeyringCannotBeReached(self):
        self.startDaemon("--unlock")
        self.probe()(f"save vault {first}")
        program = shutil.copy(harness.probe, self.home)

        def answers():
            alone = harness.Probe(self, [program], self.environment)
            return alone("find vault"), alone(f"save vault {second}")

        self.assertEqual(answers(), ("-25291", "-25291"))
        built = max(harness.probe.parent.glob("mirrowvale-keyring-*.so"), key=os.path.getmtime)
        module = pathlib.Path(shutil.copy(built, self.home))
        module.chmod(0o777)  # as anyone may have written it
        self.assertEqual(answers(), ("-25291", "-25291"))
        module.unlink()
        module.symlink_to(built)
        self.assertEqual(answers(), ("-25291", "-25291"))
        self.assertEqual(self.traces(), (["keyring\n"], []))
        self.assertEqual(self.probe()("find vault"), f"0 {first}")
        module.unlink()
        shutil.copy(built, module)
        self.assertEqual(answers(), (f"0 {first}", "0"))

    def testAnItemLandsInTheDefaultCollectionAndOutlivesTheDaemon(self):
        self.startDaemon("--unlock")
        self.assertEqual((self.probe()("find vault"), self.traces()), ("-25300", ([], [])))
        self.assertEqual(self.probe()(f"save vault {first}"), "-25300 0")
        self.assertEqual(self.probe()(f"save vault {second}"), "0")
        item, = self.items()
        self.assertTrue(item.startswith(root + "/collection/login/"))
        label, = self.call(item, "org.freedesktop.DBus.Properties", "Get", "(ss)", "org.freedesktop.Secret.Item",
                           "Label")
        self.assertEqual(label, "Mirrowvale Authenticator (vault)")
        self.assertEqual(self.traces(), (["keyring\n"], []))
        probe = self.probe()
        self.endDaemon()
        self.assertEqual((probe("find vault"), probe(f"save vault {first}")), ("-25291", "-25291"))
        self.startDaemon("--unlock")
        self.assertEqual(probe("find vault"), "0 " + second)

    def testACollectionLockedBetweenLoadAndSaveKeepsItsItem(self):
        self.startDaemon("--unlock")
        probe = self.probe()
        self.assertEqual((probe("list"), probe("append 1 A")), ("0 sorted ", "1 sorted "))
        self.call(root, "org.freedesktop.Secret.Service", "Lock", "(ao)", [root + "/collection/login"])
        self.assertRegex(probe("append 1 B"), r"^2 sorted Keychain operation failed with status -(128|25308)\.$")
        self.assertRegex(probe("find vault"), "^-(128|25308)$")
        self.endDaemon()
        self.startDaemon("--unlock")
        self.assertEqual(self.probe()("list"), "2 sorted ")
        self.assertEqual(probe("append 1 C"), "3 sorted ")
        self.assertEqual((self.probe()("list"), len(self.items())), ("3 sorted ", 1))

    def testAFrozenDaemonLosesNothing(self):
        self.startDaemon("--unlock")
        self.probe()("append 3 A")
        running = self.probe()
        running("list")
        self.daemon.send_signal(signal.SIGSTOP)
        self.assertEqual(running("append 1 B"), "4 sorted " + unreachable)  # within the harness's patience
        started = self.probe()
        self.assertEqual((started("list"), started("append 1 C")), ("0 sorted " + unreachable, "1 sorted " + unreachable))
        self.daemon.send_signal(signal.SIGCONT)
        self.assertEqual(self.probe()("list"), "5 sorted ")

    def testWithoutAPromptNoCollectionIsMadeAndNoMarkLeft(self):
        self.startDaemon()
        self.assertEqual(self.probe()(f"save vault {first}"), "-25300 -128")
        self.assertEqual(self.traces(), ([], []))

    def testADaemonKilledDuringASaveLeavesTheOldOrTheNewList(self):
        self.startDaemon("--unlock")
        held = f"0 {first}"
        self.assertEqual(self.probe()(f"save vault {first}"), "-25300 0")
        outcomes = collections.Counter()
        for number in range(int(os.environ.get("MIRROWVALE_KILLS", 8))):
            probe, new = self.probe(), f"[{' ' * (number + 1)}]"
            self.assertEqual(probe("find vault"), held)
            probe.send(f"save vault {new}")
            try:
                self.daemon.wait(random.uniform(0, 0.04))
            except subprocess.TimeoutExpired:
                self.endDaemon()
            status = probe.receive()
            self.startDaemon("--unlock")
            found = probe("find vault")
            probe.end()
            self.assertIn((status, found), [("0", f"0 {new}"), ("-25291", held), ("-25291", f"0 {new}")])
            self.assertEqual(len(self.items()), 1)
            outcomes[status, "old" if found == held else "new"] += 1
            held = found
        print(dict(outcomes))

    def testALargeListLoadsSortsAndSaves(self):
        self.startDaemon("--unlock")
        probe = self.probe()
        self.assertEqual((probe("list"), probe("append 10000 Issuer")), ("0 sorted ", "10000 unsorted "))
        probe = self.probe()
        self.assertEqual((probe("list"), probe("append 1 A")), ("10000 sorted ", "10001 unsorted "))
        self.assertEqual(self.probe()("list"), "10001 sorted ")
        self.assertEqual((len(self.items()), self.traces()), (1, (["keyring\n"], [])))


if __name__ == "__main__":
    harness.main()
