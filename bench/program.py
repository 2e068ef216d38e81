"""Starts a program in a home and on a display of its own and watches it from outside: its frames, through a
preloaded recorder; its memory, wake-ups and processor time, through the kernel."""

import os
import pathlib
import select
import struct
import subprocess
import time


class Display:
    """A virtual display; windows stand at its upper left corner."""

    def __init__(self, width=600, height=1000, **changes):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24", "-noreset", "-nolisten",
             "tcp"], pass_fds=[writing], stderr=subprocess.DEVNULL, env={**os.environ, **changes})
        os.close(writing)
        with open(reading, encoding="ascii") as line:
            self.name = ":" + line.readline().strip()

    def __enter__(self):
        return self

    def pointer(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env={**os.environ, "DISPLAY": self.name}, check=True,
                       stdout=subprocess.DEVNULL)

    def __exit__(self, *failure):
        self.server.terminate()
        self.server.wait()


class Bus:
    """A session bus that starts no service of the machine; with a keyring of its own in a home, unless it has none."""

    def __init__(self, home, keyring=False):
        home.mkdir(mode=0o700, parents=True, exist_ok=True)
        configuration = home / "bus.conf"
        configuration.write_text(f"""<busconfig><type>session</type><listen>unix:dir={home}</listen>
            <policy context="default"><allow send_destination="*" eavesdrop="true"/>
                <allow eavesdrop="true"/><allow own="*"/></policy>
            </busconfig>""")
        self.processes = [subprocess.Popen(["dbus-daemon", f"--config-file={configuration}", "--print-address"],
                                           stdout=subprocess.PIPE, text=True)]
        self.address = self.processes[0].stdout.readline().strip()
        if keyring:
            self.startKeyring(home)

    def startKeyring(self, home):
        daemon = subprocess.Popen(["gnome-keyring-daemon", "--foreground", "--components=secrets", "--unlock"],
                                  env={"PATH": os.environ["PATH"], "HOME": str(home), "XDG_RUNTIME_DIR": str(home),
                                       "DBUS_SESSION_BUS_ADDRESS": self.address},
                                  stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.processes.append(daemon)
        daemon.stdin.write(b"password")
        daemon.stdin.close()
        while "true" not in subprocess.run(
                ["dbus-send", f"--bus={self.address}", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                 "org.freedesktop.DBus.NameHasOwner", "string:org.freedesktop.secrets"],
                capture_output=True, text=True, check=True).stdout:
            time.sleep(0.05)

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()


class Program:
    """One process. Times are in seconds, sizes in bytes."""

    def __init__(self, build, command, display, home, **changes):
        runtime = pathlib.Path(home, "runtime")
        runtime.mkdir(mode=0o700, parents=True, exist_ok=True)
        reading, writing = os.pipe()
        folders = {f"XDG_{name.upper()}_HOME": f"{home}/{name}" for name in ("data", "state", "cache", "config")}
        environment = {
            "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "TZ": "UTC", "HOME": str(home), **folders,
            "XDG_RUNTIME_DIR": str(runtime), "DBUS_SESSION_BUS_ADDRESS": "disabled:", "DISPLAY": display.name,
            "QT_QPA_PLATFORM": "xcb", "LD_PRELOAD": str(pathlib.Path(build, "bench/libbench_frames.so").resolve()),
            "MIRROWVALE_BENCH_FRAMES": str(writing), **changes}
        self.display = display
        self.recorder = reading
        self.started = time.monotonic()
        self.process = subprocess.Popen(command, env=environment, pass_fds=[writing], stdin=subprocess.DEVNULL)
        os.close(writing)

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self.process.terminate()
        self.process.wait()
        os.close(self.recorder)

    def firstFrame(self):
        """Waits for it; its time since the start, and the processor time spent on it."""
        record = os.read(self.recorder, 16)
        if len(record) != 16:
            raise RuntimeError("the program ended before its first frame")
        instant, processor = struct.unpack("qq", record)
        return instant / 1e9 - self.started, processor / 1e9

    def frames(self):
        """What has been recorded since the last call: the instants and processor times of frames."""
        found = []
        while select.select([self.recorder], [], [], 0)[0]:
            records = os.read(self.recorder, 16 * 256)
            if not records:
                break
            found += [(instant / 1e9, processor / 1e9) for instant, processor in struct.iter_unpack("qq", records)]
        return found

    def status(self, path, field):
        for line in pathlib.Path(path, "status").read_text().splitlines():
            name, _, value = line.partition(":")
            if name == field:
                return int(value.split()[0])
        raise KeyError(field)

    def peakMemory(self):
        return 1024 * self.status(f"/proc/{self.process.pid}", "VmHWM")

    def tasks(self):
        return list(pathlib.Path(f"/proc/{self.process.pid}/task").iterdir())

    def wakeUps(self):
        """How often any thread has gone to sleep so far: each of them is a wake-up, too."""
        return sum(self.status(task, "voluntary_ctxt_switches") for task in self.tasks())

    def processorTime(self):
        return sum(int(pathlib.Path(task, "schedstat").read_text().split()[0]) for task in self.tasks()) / 1e9
