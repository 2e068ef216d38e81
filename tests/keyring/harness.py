"""Session buses, keyrings and a probe that works on the credential store, all in folders of their own."""

import json
import os
import pathlib
import select
import shutil
import subprocess
import sys
import tempfile
import unittest

attributes = {"class": "generic-password", "service": "app.mirrowvale.authenticator.tokens", "account": "vault",
              "xdg:schema": "app.mirrowvale.authenticator.item"}

probe = None  # the program under test
patience = 15  # seconds until something that does not come counts as failed
folder = pathlib.Path(__file__).parent

# A bus that knows the services of this machine would bring up its keyring.
busConfiguration = """<busconfig><type>session</type><listen>unix:path={0}/runtime/bus</listen>
<auth>EXTERNAL</auth><servicedir>{0}/services</servicedir>
<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>
</busconfig>"""


def main():
    """Runs the calling file's tests: PROBE [unittest's arguments]."""
    global probe
    probe = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)


class Talk:
    """A program that answers each line with one line."""

    def __init__(self, test, command, environment, **options):
        self.process = subprocess.Popen(command, env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        **options)
        test.addCleanup(self.end)

    def send(self, line):
        self.process.stdin.write(line.encode("latin-1") + b"\n")
        self.process.stdin.flush()

    def receive(self):
        """The next line, or nothing where the program ended instead."""
        if not select.select([self.process.stdout], [], [], patience)[0]:
            raise AssertionError("no answer in time")
        return self.process.stdout.readline().decode("latin-1").rstrip("\n")

    def __call__(self, line):
        self.send(line)
        return self.receive()

    def end(self):
        if self.process.returncode is None:
            self.process.kill()
            self.process.communicate()


class Probe(Talk):
    def end(self):
        """Lets the program come to its end, where a sanitizer has the last word."""
        if self.process.returncode is None:
            self.process.communicate(timeout=patience)
            assert self.process.returncode == 0


class Fake(Talk):
    def __init__(self, test, **script):
        super().__init__(test, [sys.executable, folder / "fake_secret_service.py"], test.environment)
        self.tell(**script)

    def tell(self, **change):
        """Changes the script; what the service holds becomes fields of this object."""
        self.__dict__.update(json.loads(self(json.dumps(change))))
        return self

    look = tell


class KeyringTest(unittest.TestCase):
    """A test with a home and a session bus of its own."""

    def setUp(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="mirrowvale-test-"))
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        self.record = self.home / ".local/state/mirrowvale-authenticator/app.mirrowvale.authenticator.tokens.location"
        runtime = self.home / "runtime"
        runtime.mkdir(mode=0o700)
        (self.home / "services").mkdir()
        self.address = f"unix:path={runtime / 'bus'}"
        self.environment = {name: value for name, value in os.environ.items()
                            if name in ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")}
        self.environment.update(HOME=str(self.home), XDG_RUNTIME_DIR=str(runtime), LANG="C.UTF-8",
                                DBUS_SESSION_BUS_ADDRESS=self.address, PYTHONDONTWRITEBYTECODE="1")
        self.startBus()

    def startBus(self):
        configuration = self.home / "bus.conf"
        configuration.write_text(busConfiguration.format(self.home))
        self.bus = Talk(self, ["dbus-daemon", "--nofork", "--print-address", f"--config-file={configuration}"],
                        self.environment, stderr=subprocess.DEVNULL)
        self.bus.receive()

    def probe(self, **environment):
        return Probe(self, [probe], {**self.environment, **environment})

    def traces(self):
        """The location records, and the sealed files."""
        return ([self.record.read_text()] if self.record.exists() else [],
                [path.name for path in self.home.glob(".local/share/*/*.sealed")])
