"""Runs quorvel beside other programs over the same calendars and prints medians and ratios.

Called by bench/compare, which builds and installs what is needed. What is compared stands side by
side in time, so that a machine whose speed drifts slows both.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
QUORVEL = TOP / "build/release/quorvel"
BENCH = TOP / "build/bench/bench"
SIZES = (1000, 10000, 100000)
FOLDER_SIZES = (1000, 10000)
CALENDARS = 5
DAYS = 3
NOW = "2026-03-10T10:00:00+01:00"
ZONE = "Europe/Berlin"
SETTLING = 2.2  # seconds after which a file that was written is trusted by its times


class Run:
    """One run of a command to its end."""

    def __init__(self, command, environment):
        start = time.perf_counter()
        process = subprocess.Popen([str(word) for word in command], env=environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                   stdin=subprocess.DEVNULL)
        self.lines = process.stdout.read().count(b"\n")
        _, status, usage = os.wait4(process.pid, 0)
        self.seconds = time.perf_counter() - start
        self.processor = usage.ru_utime + usage.ru_stime
        self.megabytes = usage.ru_maxrss / 1024
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            sys.exit(f"compare: {command[0]} failed with {process.returncode}")
        if self.lines == 0:
            sys.exit(f"compare: {command[0]} printed nothing")


class Side:
    """A command with its environment, and its runs."""

    def __init__(self, name, command, environment):
        self.name = name
        self.command = command
        self.environment = environment
        self.runs = []

    def run(self):
        self.runs.append(Run(self.command, self.environment))

    def median(self, figure):
        return statistics.median(getattr(run, figure) for run in self.runs)


def run_in_turn(sides, runs):
    for side in sides:  # once to warm up: indexes and databases are built
        Run(side.command, side.environment)
    time.sleep(SETTLING)
    for side in sides:
        Run(side.command, side.environment)
    for _ in range(runs):
        for side in sides:
            side.run()


def ratio(one, other):
    return statistics.median(a.seconds / b.seconds for a, b in zip(one.runs, other.runs))


def milliseconds(seconds):
    return f"{seconds * 1000:.1f} ms" if seconds < 0.1 else f"{seconds * 1000:.0f} ms"


def row(*cells):
    print("| " + " | ".join(str(cell) for cell in cells) + " |", flush=True)


def header(*cells):
    print(flush=True)
    row(*cells)
    row(*("---" for _ in cells))


class Data:
    """Made-up calendars in every form that the programs read, in a home of their own."""

    def __init__(self, top, size, form):
        self.folder = top / f"{form}-{size}"
        self.home = top / f"home-{form}-{size}"
        self.home.mkdir()
        subprocess.run([BENCH / "make_calendars", form, self.folder, str(size), str(CALENDARS)],
                       check=True)
        self.environment = {"PATH": os.environ["PATH"], "HOME": str(self.home),
                            "LANG": "C.UTF-8", "TZ": ZONE}

    def quorvel(self, name, *more):
        return Side(name, [QUORVEL, "agenda", "--calendars", self.folder, "--now", NOW,
                           "--timezone", ZONE, "--locale", "en_GB", *more], self.environment)

    def files(self):
        return sorted(self.folder.glob("*.ics"))

    def khal(self):
        calendars = "".join(f"[[calendar{i}]]\npath = {self.folder}/calendar{i}\ntype = calendar\n"
                            for i in range(1, CALENDARS + 1))
        path = self.home / "khal.conf"
        path.write_text(
            f"[calendars]\n{calendars}"
            f"[locale]\nlocal_timezone = {ZONE}\ndefault_timezone = {ZONE}\n"
            "timeformat = %H:%M\ndateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\n"
            "datetimeformat = %Y-%m-%d %H:%M\nlongdatetimeformat = %Y-%m-%d %H:%M\n"
            f"[sqlite]\npath = {self.home}/khal.db\n")
        return Side("khal", ["khal", "-c", path, "list", "2026-03-10", f"{DAYS}d"],
                    self.environment)

    def calcurse(self):
        store = self.home / "calcurse"
        store.mkdir()
        for file in self.files():
            subprocess.run(["calcurse", "-D", store, "-q", "-i", file], check=True,
                           env=self.environment, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL)
        return Side("calcurse", ["calcurse", "-D", store, "-q", "-Q", "--from", "03/10/2026",
                                 "--days", str(DAYS)], self.environment)


def compare_folders(top, runs):
    header("events in folders", "quorvel", "khal", "ratio", "target",
           "peak of quorvel", "peak of khal")
    for size in FOLDER_SIZES:
        data = Data(top, size, "vdir")
        ours, theirs = data.quorvel("quorvel"), data.khal()
        run_in_turn((ours, theirs), runs)
        row(f"{size:,}", milliseconds(ours.median("seconds")),
            milliseconds(theirs.median("seconds")), f"{ratio(ours, theirs):.3f}",
            "0.05" if size == 10000 else "", f"{ours.median('megabytes'):.0f} MB",
            f"{theirs.median('megabytes'):.0f} MB")


def compare_files(top, runs):
    header("events in files", "quorvel", "calcurse", "ratio", "target", "beside 1,000 events",
           "target", "peak of quorvel", "peak of calcurse")
    datas = [Data(top, size, "files") for size in SIZES]
    ours = [data.quorvel("quorvel") for data in datas]
    theirs = [data.calcurse() for data in datas]
    run_in_turn([side for pair in zip(ours, theirs) for side in pair], runs)
    targets = {1000: "1", 10000: "0.2", 100000: "0.04"}
    for size, one, other in zip(SIZES, ours, theirs):
        row(f"{size:,}", milliseconds(one.median("seconds")),
            milliseconds(other.median("seconds")), f"{ratio(one, other):.3f}",
            targets.get(size, ""), f"{ratio(one, ours[0]):.2f}", "2" if size == 100000 else "",
            f"{one.median('megabytes'):.0f} MB", f"{other.median('megabytes'):.0f} MB")
    return datas[-1]


def compare_reading(data, runs):
    header("100,000 events in files, without index", "time", "processor", "quorvel beside it",
           "target", "peak")
    ours = data.quorvel("quorvel --no-cache", "--no-cache")
    libical = Side("libical: parse and expand", [BENCH / "libical_agenda", DAYS, *data.files()],
                   data.environment)
    scan = Side("read and scan for newlines", [BENCH / "scan_lines", *data.files()],
                data.environment)
    run_in_turn((ours, libical, scan), runs)
    for side, target in ((ours, ""), (libical, "0.1"), (scan, "3")):
        beside = "" if side is ours else f"{ratio(ours, side):.3g}"
        row(side.name, milliseconds(side.median("seconds")),
            milliseconds(side.median("processor")), beside, target,
            f"{side.median('megabytes'):.0f} MB")


def measure_life(data):
    header("inside a process that lives, 100,000 events", "time", "target")
    output = subprocess.run([BENCH / "live_bench", data.folder, data.home / "index"], check=True,
                            env=data.environment, capture_output=True, text=True).stdout
    times = dict(line.split(" ", 1) for line in output.splitlines())
    row("a presentation, nothing changed", times["unchanged"], "2 ms")
    row("a presentation after one event was edited", times["edited"], "50 ms")
    row("the same, at once after a start from the index", times["indexed"], "")


def main():
    runs = int(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        top = pathlib.Path(folder)
        compare_folders(top, runs)
        data = compare_files(top, runs)
        compare_reading(data, runs)
        measure_life(data)


if __name__ == "__main__":
    main()
