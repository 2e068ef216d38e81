"""Starts a program in a home and on a display of its own and watches it from outside: its frames, through a
preloaded recorder; its memory, wake-ups and processor time, through the kernel."""

import os
import pathlib
import select
import struct
import subprocess
import time

environmentKept = ("PATH", "DBUS_SESSION_BUS_ADDRESS")


class Display:
    """A virtual display; windows stand at its upper left corner."""

    def __init__(self):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "600x1000x24", "-noreset", "-nolisten", "tcp"],
            pass_fds=[writing], stderr=subprocess.DEVNULL)
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


class Program:
    """One process. Times are in seconds, sizes in bytes."""

    def __init__(self, build, command, display, home, **changes):
        runtime = pathlib.Path(home, "runtime")
        runtime.mkdir(mode=0o700, parents=True, exist_ok=True)
        reading, writing = os.pipe()
        environment = {name: os.environ[name] for name in environmentKept if name in os.environ}
        environment.update(
            DISPLAY=display.name, LANG="C.UTF-8", TZ="UTC", HOME=str(home), XDG_RUNTIME_DIR=str(runtime),
            XDG_DATA_HOME=f"{home}/data", XDG_STATE_HOME=f"{home}/state", XDG_CACHE_HOME=f"{home}/cache",
            XDG_CONFIG_HOME=f"{home}/config", QT_QPA_PLATFORM="xcb",
            LD_PRELOAD=str(pathlib.Path(build, "bench/libbench_frames.so").resolve()),
            MIRROWVALE_BENCH_FRAMES=str(writing), **changes)
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
