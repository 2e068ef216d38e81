"""Counts the instructions of single frames, on a window of a common phone's size. The program's clock and the
display's run so slowly that the frames follow each other as they do when nobody counts."""

import pathlib
import re
import statistics
import time

from program import Display, Program

width, height, scale = 720, 1440, 2  # of the window, in pixels
slowness = 50  # how many seconds one on those clocks takes


def slowClock():
    library, = pathlib.Path("/usr/lib").glob("*/faketime/libfaketimeMT.so.1")
    return {"LD_PRELOAD": str(library), "FAKETIME": f"+0 x{1 / slowness}", "NO_FAKE_STAT": "1"}


class CountedProgram(Program):
    def __init__(self, build, application, display, home):
        self.folder = pathlib.Path(home, "frames")
        self.folder.mkdir()
        self.told = 0
        command = ["valgrind", "--quiet", "--tool=callgrind", f"--callgrind-out-file={self.folder}/%p",
                   "--dump-after=QBackingStore::flush(QRegion const&, QWindow*, QPoint const&)",
                   application, "-qwindowgeometry", f"{width // scale}x{height // scale}+0+0"]
        # Without the tunables, a long copy or fill counts an instruction for each byte.
        super().__init__(build, command, display, home, QT_SCALE_FACTOR=str(scale), **slowClock(),
                         GLIBC_TUNABLES="glibc.cpu.x86_rep_movsb_threshold=1000000000:"
                                        "glibc.cpu.x86_rep_stosb_threshold=1000000000")

    def newFrames(self):
        """The instructions of each frame since the last call, once no further frame comes."""
        count = 0
        while count == 0 or count != self.count():
            count = self.count()
            time.sleep(0.2 * slowness)
        files = [self.folder / f"{self.process.pid}.{number + 1}" for number in range(self.told, count)]
        self.told = count
        return [int(re.search(r"^totals: (\d+)", file.read_text(), re.MULTILINE)[1]) for file in files]

    def count(self):
        return len(list(self.folder.glob(f"{self.process.pid}.*")))


def usualFrames(build, application, home):
    """The instructions of the usual frame of a fling, and of the sheet's rise."""
    with Display(width, height, **slowClock()) as display, \
            CountedProgram(build, application, display, home) as program:
        program.newFrames()
        flung = fling(program)
        display.pointer("mousemove", width - 54, 44)
        program.newFrames()
        display.pointer("mousedown", 1, "sleep", 0.05 * slowness, "mouseup", 1)
        time.sleep(0.5 * slowness)
        return statistics.median(flung), statistics.median(program.newFrames())


def fling(program):
    """The instructions of each frame of its first second."""
    steps = []
    for y in range(1300, 430, -86):
        steps += ["mousemove", width // 2, y, "sleep", 0.016 * slowness]
    program.display.pointer("mousemove", width // 2, 1300, "mousedown", 1, *steps, "mouseup", 1)
    program.told = program.count()
    time.sleep(slowness)
    program.display.pointer("click", 1)  # holds the list
    return program.newFrames()
