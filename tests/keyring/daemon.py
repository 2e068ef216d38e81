"""The credential store over the keyring daemon of a desktop."""

import re
import subprocess

import harness
from harness import attributes


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

    def testALargeListIsOneItemOfTheDefaultCollectionAndOutlivesTheDaemon(self):
        self.startDaemon()
        self.assertEqual((self.probe()("list"), self.traces()), ("0 sorted ", ([], [])))
        self.assertEqual(self.probe()("append 10000 Issuer"), "10000 unsorted ")
        probe = self.probe()
        self.assertEqual((probe("list"), probe("append 1 A")), ("10000 sorted ", "10001 unsorted "))
        found = self.ask("call", "--session", "--dest=org.freedesktop.secrets", "--object-path=/org/freedesktop/secrets",
                         "--method=org.freedesktop.Secret.Service.SearchItems", str(attributes))
        self.assertEqual(len(re.findall("/collection/login/", found)), 1)
        self.assertEqual(self.traces(), (["keyring\n"], []))
        self.endDaemon()
        self.assertEqual(probe("list"), "0 sorted Keychain operation failed with status -25291.")
        self.startDaemon()
        self.assertEqual(probe("list"), "10001 sorted ")


harness.main()
