"""Measures the benchmarks and the whole application, each beside its yardstick, and prints one table.
    measure.py BUILD-FOLDER EMPTY-FOLDER [--quick]"""

import contextlib
import datetime
import json
import pathlib
import platform
import random
import statistics
import subprocess
import sys
import time

import instructions
import plot
from program import Bus, Display, Program

build, work = (pathlib.Path(path).resolve() for path in sys.argv[1:3])
quick = "--quick" in sys.argv[3:]
runs = 3 if quick else 15  # of whole processes, and repetitions of benchmarks
restTime = 10 if quick else 60  # seconds
counts = [10, 100, 1000, 10_000, 100_000]
application, bareWindow, gtkWindow = (build / name for name in (
    "mirrowvale-authenticator", "bench/bench_window", "bench/bench_gtk"))
median = statistics.median
rows = []  # of the table
growth = {}  # name: (unit, points)


def report(what, measured, yardstick, aim, unit, decimals=2, floor=None):
    """Adds a row: both values in `unit`, and the ratio that must not be above the aim. Without a yardstick
    the measured value itself must not."""
    ratio = measured if yardstick is None else measured / yardstick
    form = lambda value: f"{value:,.{decimals}f} {unit}".strip()
    rows.append((what, form(measured), floor or ("-" if yardstick is None else form(yardstick)),
                 "-" if yardstick is None else f"{ratio:.2f}", f"{aim:g}" + ("" if yardstick is None else " ×"),
                 "yes" if ratio <= aim else "no"))


def progress(what):
    print(what, file=sys.stderr, flush=True)


# Benchmarks of functions.

def benchmark(program, *arguments):
    """The median of each benchmark, in its own unit of time, and its counters."""
    progress(f"{program} …")
    output = work / f"{program}.json"
    subprocess.run([build / "bench" / program, *arguments, f"--benchmark_repetitions={runs}",
                    "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true",
                    f"--benchmark_min_time={0.01 if quick else 0.03}", f"--benchmark_out={output}",
                    "--benchmark_out_format=json"], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    found = json.loads(output.read_text())["benchmarks"]
    return {entry["run_name"].replace("/real_time", ""): entry for entry in found
            if entry["aggregate_name"] == "median"}


def measureCore():
    found = benchmark("bench_core")
    cpu = lambda name: found[name]["cpu_time"]
    for algorithm in ("SHA1", "SHA256", "SHA512"):
        report(f"one code, {algorithm}", cpu(f"code {algorithm}"), cpu(f"HMAC {algorithm}"), 1.5, "ns", 0)
    report("heap allocations in one code", found["current code"]["allocations"], None, 1, "", 0)
    report("Base32 of 32 characters", cpu("Base32"), cpu("copy and look-ups"), 2, "ns", 1)
    report("otpauth URI, but for the system call for its identifier", cpu("otpauth URI with an identifier"),
           cpu("URI library"), 3, "ns", 0)


def measureStorage():
    found = benchmark("bench_storage", work / "storage")
    milliseconds = lambda name, count: found[f"{name}/{count}"]["real_time"] / 1000
    report("loading 10,000 tokens", milliseconds("load", 10_000), milliseconds("parse and sort", 10_000), 2, "ms", 1)
    report("saving 10,000 tokens", milliseconds("save", 10_000), milliseconds("encode and write", 10_000), 1.5,
           "ms", 1)
    growth["save"] = ("ms", [(count, milliseconds("save", count)) for count in counts])
    return milliseconds("parse and sort", 10_000)


# The whole application.

def fillHomes():
    """A home for each count, with so many tokens in it; the size of the JSON of each list."""
    sizes = {}
    for count in counts:
        home = work / f"home-{count}"
        printed = subprocess.run([build / "bench/bench_fill", home, str(count)], check=True, capture_output=True,
                                 text=True).stdout
        sizes[count] = int(printed)
    return sizes


def withTokens(count, display, **environment):
    return Program(build, [application], display, work / f"home-{count}", **environment)


def bare(display, *arguments, **environment):
    return Program(build, [bareWindow, *arguments], display, work / "home-bare", **environment)


def oneStart(program):
    """Milliseconds to the first frame, processor milliseconds, peak MiB and threads once a second has passed."""
    with program:
        sinceStart, processor = program.firstFrame()
        time.sleep(1.3)
        return sinceStart * 1000, processor * 1000, program.peakMemory() / 2**20, len(program.tasks())


def measureStarts(sizes, parseAndSort):
    progress("starts …")
    home = work / "home-keyring"
    with Display() as display, Bus(work / "bus") as bus, Bus(home, keyring=True) as keyringBus:
        onBus, onKeyringBus = ({"DBUS_SESSION_BUS_ADDRESS": each.address} for each in (bus, keyringBus))
        subprocess.run([build / "bench/bench_fill", home, "10", "keyring"], env=onKeyringBus, check=True,
                       stdout=subprocess.DEVNULL)
        start = {"bare": lambda: bare(display, **onBus),
                 "GTK": lambda: Program(build, [gtkWindow], display, work / "home-gtk", LD_PRELOAD="",
                                        GSK_RENDERER="cairo", GDK_BACKEND="x11", GTK_A11Y="none", **onBus),
                 "OpenGL": lambda: withTokens(10, display, QT_QUICK_BACKEND="rhi", **onBus),
                 "keyring": lambda: Program(build, [application], display, home, **onKeyringBus)}
        start |= {count: (lambda count=count: withTokens(count, display, **onBus)) for count in counts}
        for opening in start.values():
            oneStart(opening())  # into the disk's cache
        taken = {name: [] for name in start}
        for _ in range(runs):
            # A start takes longer right after one that left much to clear away: each follows each now and then.
            for name in random.sample(list(start), len(start)):
                taken[name].append(oneStart(start[name]()))
    shown, processor, memory, threads = ({name: median(run[part] for run in taken[name]) for name in taken}
                                         for part in range(4))

    report("start to first frame, 10 tokens", shown[10], shown["bare"], 1.1, "ms", 0)
    report("processor time of that", processor[10], processor["bare"], 1.1, "ms", 0)
    report("start to first frame, 10 tokens in a keyring", shown["keyring"], shown["bare"], 1.25, "ms", 0)
    report("start to first frame, 10 tokens, beside GTK 4", shown[10], shown["GTK"], 0.5, "ms", 0)
    report("start to first frame, 10 tokens, beside OpenGL", shown[10], shown["OpenGL"], 1, "ms", 0)
    report("processor time of that", processor[10], processor["OpenGL"], 1, "ms", 0)
    report("peak memory, 10 tokens, beside OpenGL", memory[10], memory["OpenGL"], 1, "MiB", 1)
    report("threads, beside OpenGL", threads[10], None, 4, "", 0, floor=f"{threads['OpenGL']:.0f}")
    report("peak memory, 10 tokens", memory[10], memory["bare"], 1.15, "MiB", 1)
    report("peak memory, 10 tokens, beside GTK 4", memory[10], memory["GTK"], 0.5, "MiB", 1)
    report("start with 10,000 tokens, above that with 10", processor[10_000] - processor[10], parseAndSort, 1, "ms", 1)
    report("memory per token", (memory[10_000] - memory[10]) * 2**20 / 9990, sizes[10_000] / 10_000, 4, "bytes", 0)
    growth["start"] = ("ms", [(count, shown[count]) for count in counts])
    growth["memory"] = ("MiB", [(count, memory[count]) for count in counts])


def eachSecond(programs, seconds):
    """The processor time that each program uses in each of so many seconds."""
    last = {name: program.processorTime() for name, program in programs.items()}
    used = {name: [] for name in programs}
    begin = time.monotonic()
    for second in range(1, seconds + 1):
        time.sleep(max(0, begin + second - time.monotonic()))
        for name, program in programs.items():
            now = program.processorTime()
            used[name].append(now - last[name])
            last[name] = now
    return used


def measureRest():
    progress("at rest …")
    with contextlib.ExitStack() as closing:
        programs = {count: closing.enter_context(withTokens(count, closing.enter_context(Display())))
                    for count in (0, *counts)}
        ticking = closing.enter_context(bare(closing.enter_context(Display()), "seconds"))
        for program in (*programs.values(), ticking):
            program.firstFrame()
        measureTicks(programs, ticking)
        measureHidden(programs[10])


def measureTicks(programs, ticking):
    time.sleep(3)
    before = {count: programs[count].wakeUps() for count in (0, 10)}
    used = eachSecond(programs | {"bare": ticking}, restTime)
    tick = {count: median(times) * 1000 for count, times in used.items()}
    report("processor time of a tick, seven rows in sight", tick[10], tick["bare"], 1.25, "ms", 3)
    report("processor time of a tick, 10,000 tokens against 10", tick[10_000], tick[10], 1.2, "ms", 3)
    for count, what, aim in ((10, "wake-ups in a minute", 61), (0, "the same, empty list", 0)):
        report(what, (programs[count].wakeUps() - before[count]) * 60 / restTime, None, aim, "", 0)
    growth["tick"] = ("ms", [(count, tick[count]) for count in counts])


def measureHidden(program):
    program.display.pointer("search", "--onlyvisible", "--name", "Mirrowvale", "windowunmap")
    time.sleep(2)
    program.frames()
    before = program.wakeUps()
    used = sum(eachSecond({10: program}, restTime)[10])
    report("the same, window hidden", (program.wakeUps() - before) * 60 / restTime, None, 0, "", 0)
    report("frames drawn meanwhile", len(program.frames()), None, 0, "", 0)
    report("processor time of a hidden minute", used * 1000 * 60 / restTime, None, 0, "ms", 3)


def fling(program):
    """Throws the list upwards; the length of each frame of the first second, on the clock and in processor
    time, in milliseconds."""
    steps = []
    for y in range(780, 180, -60):
        steps += ["mousemove", 150, y, "sleep", "0.008"]
    program.frames()
    program.display.pointer("mousemove", 150, 800, "mousedown", 1, *steps, "mouseup", 1)
    released = time.monotonic()
    time.sleep(1)
    frames = [frame for frame in program.frames() if frame[0] > released]
    program.display.pointer("mousemove", 150, 800, "sleep", "1.5")
    return [[(after[part] - before[part]) * 1000 for before, after in zip(frames, frames[1:])] for part in range(2)]


def measureFlings():
    progress("flings …")
    with contextlib.ExitStack() as closing:
        ours, theirs = (closing.enter_context(program) for program in (
            withTokens(10_000, closing.enter_context(Display())), bare(closing.enter_context(Display()), "10000")))
        for program in (ours, theirs):
            program.firstFrame()
            fling(program)
        taken = {program: [] for program in (ours, theirs)}
        for _ in range(runs):
            for program, lengths in taken.items():
                lengths.append(fling(program))
        least = min(len(run[0]) for lengths in taken.values() for run in lengths)
        if least < 20:
            raise RuntimeError(f"a list hardly moved: {least} frames")
        for part, name in ((0, "longest frame of a fling"), (1, "processor time of the costliest frame")):
            worst = {program: median(max(run[part]) for run in lengths) for program, lengths in taken.items()}
            report(name, worst[ours], worst[theirs], 1.5, "ms", 1)


def measureInstructions():
    progress("instructions …")
    counted = instructions.usualFrames(build, application, work / "home-10000")
    for what, count in zip(("a fling", "the sheet's rise"), counted):
        report(f"instructions of a usual frame of {what}, 720 × 1440 at scale 2", count / 1e6, None, 10, "million", 1)


def checkGrowth():
    """From each count to the next, ten times as many, no more than ten times as much; of a tick, the same."""
    for name, (unit, points) in growth.items():
        steepest = max(after[1] / before[1] for before, after in zip(points, points[1:]))
        limit = 1.2 if name == "tick" else 10
        values = ", ".join(f"{value:,.3g}" for _, value in points)
        rows.append((f"growth of {name}: 10, 100, … 100,000", f"{values} {unit}", "-", f"{steepest:.2f}",
                     f"{limit:g} × a step", "yes" if steepest <= limit else "no"))


def machine():
    fields = dict(line.split(":", 1) for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines() if ":" in line)
    processor = {name.strip(): value.strip() for name, value in fields.items()}
    memory = int(pathlib.Path("/proc/meminfo").read_text().split()[1]) / 2**20
    packages = subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${Version}, ", "libqt6quick6", "libnettle8"],
                              capture_output=True, text=True).stdout
    debian = pathlib.Path("/etc/debian_version").read_text().strip()
    return (f"{datetime.date.today()}, {processor.get('model name')}, {int(processor['processor']) + 1} cores, "
            f"{memory:.0f} GiB, Debian {debian}, Linux {platform.release()}, {packages}software renderer on Xvfb, "
            f"medians of {runs} runs")


def main():
    measureCore()
    parseAndSort = measureStorage()
    sizes = fillHomes()
    measureStarts(sizes, parseAndSort)
    measureRest()
    measureFlings()
    measureInstructions()
    checkGrowth()
    print(machine() + "\n")
    print("| what | measured | yardstick | ratio | aim | met |\n|---|---|---|---|---|---|")
    for row in rows:
        print("| " + " | ".join(row) + " |")
    if not quick:
        for name, (unit, points) in growth.items():
            title = {"start": "Start to first frame", "save": "One save", "tick": "Processor time of a tick",
                     "memory": "Peak memory"}[name]
            (pathlib.Path(__file__).parent / f"growth-{name}.svg").write_text(plot.growth(title, unit, points))


main()
