"""The credential store over the keyring daemon of a desktop."""

import os
import pathlib
import re
import shutil
import signal
import subprocess

import harness
from harness import attributes, first, second

unreachable = "Keychain operation failed with status -25291."


class DaemonTest(harness.KeyringTest):
    def ask(self, *arguments):
        return subprocess.run(["gdbus", *arguments], env=self.environment, stdout=subprocess.PIPE, text=True,
                              check=True).stdout

    def startDaemon(self):
        """Starts the daemon and waits until it stands on the bus."""
        self.daemon = subprocess.Popen(["gnome-keyring-daemon", "--foreground", "--components=secrets", "--unlock"],
                                       env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
        self.addCleanup(self.endDaemon)
        self.daemon.stdin.write(b"password")
        self.daemon.stdin.close()
        self.ask("wait", "--session", "org.freedesktop.secrets")

    def endDaemon(self):
        self.daemon.kill()
        self.daemon.wait()

    def assertOneItem(self):
        found = self.ask("call", "--session", "--dest=org.freedesktop.secrets", "--object-path=/org/freedesktop/secrets",
                         "--method=org.freedesktop.Secret.Service.SearchItems", str(attributes))
        self.assertEqual(len(re.findall("/collection/login/", found)), 1)
        self.assertEqual(self.traces(), (["keyring\n"], []))

    def testWithoutATrustedModuleTheKeyringCannotBeReached(self):
        self.startDaemon()
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
        self.startDaemon()
        self.assertEqual((self.probe()("find vault"), self.traces()), ("-25300", ([], [])))
        self.assertEqual(self.probe()(f"save vault {first}"), "-25300 0")
        self.assertEqual(self.probe()(f"save vault {second}"), "0")
        self.assertOneItem()
        probe = self.probe()
        self.endDaemon()
        self.assertEqual((probe("find vault"), probe(f"save vault {first}")), ("-25291", "-25291"))
        self.startDaemon()
        self.assertEqual(probe("find vault"), "0 " + second)

    def testAFrozenDaemonLosesNothing(self):
        self.startDaemon()
        self.probe()("append 3 A")
        running = self.probe()
        running("list")
        self.daemon.send_signal(signal.SIGSTOP)
        self.assertEqual(running("append 1 B"), "4 sorted " + unreachable)  # within the harness's patience
        started = self.probe()
        self.assertEqual((started("list"), started("append 1 C")), ("0 sorted " + unreachable, "1 sorted " + unreachable))
        self.daemon.send_signal(signal.SIGCONT)
        self.assertEqual(self.probe()("list"), "5 sorted ")

    def testALargeListLoadsSortsAndSaves(self):
        self.startDaemon()
        probe = self.probe()
        self.assertEqual((probe("list"), probe("append 10000 Issuer")), ("0 sorted ", "10000 unsorted "))
        probe = self.probe()
        self.assertEqual((probe("list"), probe("append 1 A")), ("10000 sorted ", "10001 unsorted "))
        self.assertEqual(self.probe()("list"), "10001 sorted ")
        self.assertOneItem()


harness.main()
