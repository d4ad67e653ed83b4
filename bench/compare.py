"""Runs quorvel and khal in turn over the same calendars and prints medians and ratios.

Called by bench/compare, which builds and installs what is needed. Each pair of runs stands side
by side in time, so that a machine whose speed drifts slows both.
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
MAKE_CALENDARS = TOP / "build/bench/bench/make_calendars"
SIZES = (1000, 10000)
NOW = "2026-03-10T10:00:00+01:00"
CALENDARS = 5


def run(command, environment):
    """Runs a command to its end: wall seconds, processor seconds, peak MB, lines printed."""
    start = time.perf_counter()
    process = subprocess.Popen(command, env=environment, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL)
    lines = process.stdout.read().count(b"\n")
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"compare: {command[0]} failed with {process.returncode}")
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024, lines


def write_khal_configuration(folder, collection):
    calendars = "".join(
        f"[[calendar{i}]]\npath = {collection}/calendar{i}\ntype = calendar\n"
        for i in range(1, CALENDARS + 1))
    path = folder / "khal.conf"
    path.write_text(
        f"[calendars]\n{calendars}"
        "[locale]\nlocal_timezone = Europe/Berlin\ndefault_timezone = Europe/Berlin\n"
        "timeformat = %H:%M\ndateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\n"
        "datetimeformat = %Y-%m-%d %H:%M\nlongdatetimeformat = %Y-%m-%d %H:%M\n"
        f"[sqlite]\npath = {folder}/khal.db\n")
    return path


def compare(size, runs, folder):
    collection = folder / "collection"
    subprocess.run([MAKE_CALENDARS, collection, str(size), str(CALENDARS)], check=True)
    home = folder / "home"
    home.mkdir()
    environment = {"PATH": os.environ["PATH"], "HOME": str(home), "LANG": "C.UTF-8",
                   "XDG_CONFIG_HOME": str(home / "config"), "XDG_CACHE_HOME": str(home / "cache")}
    ours = [str(QUORVEL), "agenda", "--calendars", str(collection), "--now", NOW,
            "--timezone", "Europe/Berlin", "--locale", "en_GB"]
    theirs = ["khal", "-c", str(write_khal_configuration(folder, collection)),
              "list", "2026-03-10", "3d"]
    for command in (ours, theirs):  # khal builds its database in the first run
        run(command, environment)
    pairs = [(run(ours, environment), run(theirs, environment)) for _ in range(runs)]

    def median(side, figure):
        return statistics.median(pair[side][figure] for pair in pairs)

    ratio = statistics.median(a[0] / b[0] for a, b in pairs)
    print(f"| {size:,} | {median(0, 0) * 1000:.0f} ms | {median(1, 0) * 1000:.0f} ms "
          f"| {ratio:.3f} | {median(0, 1) * 1000:.0f} ms | {median(1, 1) * 1000:.0f} ms "
          f"| {median(0, 2):.0f} MB | {median(1, 2):.0f} MB |", flush=True)


def main():
    runs = int(sys.argv[1])
    print("| events | quorvel | khal | ratio | quorvel, CPU | khal, CPU "
          "| quorvel, peak | khal, peak |")
    print("|---|---|---|---|---|---|---|---|", flush=True)
    for size in SIZES:
        with tempfile.TemporaryDirectory() as folder:
            compare(size, runs, pathlib.Path(folder))


if __name__ == "__main__":
    main()
