"""Runs quorvel over calendars that are too large or no calendars, called by bench/limits."""

import os
import pathlib
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
QUORVEL = TOP / "build/release/quorvel"
MAKE_CALENDARS = TOP / "build/bench/bench/make_calendars"
NOW = "2026-03-10T10:00:00+01:00"
MOST_MEGABYTES = 300
GOOD = ("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:good\r\n"
        "DTSTART:20260310T120000Z\r\nSUMMARY:The rest is shown\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")


def make_million(folder):
    subprocess.run([MAKE_CALENDARS, "files", folder, "1000000", "5"], check=True)


def make_million_in_a_file(folder):
    subprocess.run([MAKE_CALENDARS, "files", folder, "1000000", "1"], check=True)


def make_gigabyte(folder):
    subprocess.run([MAKE_CALENDARS, "files", folder, "2000000", "1"], check=True)


# The smallest events that there are, which take the most to put together.
def make_overrides(folder):
    write_events(folder / "overrides.ics", 2_000_000,
                 "BEGIN:VEVENT\nUID:{0}\nDTSTART:20260310\nRECURRENCE-ID:20260310\nEND:VEVENT\n")


def make_versions(folder):
    write_events(folder / "versions.ics", 2_000_000,
                 "BEGIN:VEVENT\nUID:{1}\nDTSTART:20260101\nEND:VEVENT\n")


def write_events(path, count, event):
    with open(path, "w", encoding="ascii") as file:
        file.write("BEGIN:VCALENDAR\n")
        for i in range(count):
            file.write(event.format(i, i // 2))
        file.write("END:VCALENDAR\n")


def make_many_files(folder):
    (folder / "many").mkdir()
    for i in range(100_000):
        text = GOOD.replace("good", f"event{i}").replace("20260310", f"202603{10 + i % 20}")
        (folder / "many" / f"event{i}.ics").write_text(text.replace("The rest is", f"Event {i} is"))


def make_oddities(folder):
    os.mkfifo(folder / "pipe.ics")
    (folder / "loop").symlink_to(folder)
    (folder / "itself.ics").symlink_to("itself.ics")
    (folder / "zero.ics").symlink_to("/dev/zero")
    (folder / "closed").mkdir(mode=0)
    # Bit by bit: a process is charged with what this one holds when it is started.
    with open(folder / "garbage.ics", "wb") as garbage, open(folder / "line.ics", "wb") as line:
        for _ in range(200):
            garbage.write(os.urandom(250_000))
            line.write(b"x" * 1_000_000)


def run(folder, environment, more):
    """Exit status, seconds, peak megabytes, and all that was said."""
    command = [str(QUORVEL), "agenda", "--calendars", str(folder), "--now", NOW,
               "--timezone", "Europe/Berlin", "--locale", "en_GB", *more]
    start = time.perf_counter()
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen(command, env=environment, stdout=output,
                                   stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        seconds = time.perf_counter() - start
        output.seek(0)
        text = output.read().decode(errors="replace")
    return process.returncode, seconds, usage.ru_maxrss / 1024, text


def main():
    failures = []
    print("| what | index | seconds | peak |\n|---|---|---|---|", flush=True)
    for name, make in (("a million events", make_million),
                       ("a million events in a file", make_million_in_a_file),
                       ("a file of a gigabyte", make_gigabyte),
                       ("two million overrides", make_overrides),
                       ("two million versions of a million events", make_versions),
                       ("100,000 files in a folder", make_many_files),
                       ("a pipe, loops, devices, garbage", make_oddities)):
        with tempfile.TemporaryDirectory() as top:
            folder = pathlib.Path(top) / "calendars"
            folder.mkdir()
            make(folder)
            (folder / "good.ics").write_text(GOOD)
            time.sleep(2.1)  # files are trusted two seconds after they were written
            environment = {"PATH": os.environ["PATH"], "HOME": top, "LANG": "C.UTF-8"}
            for index, more in (("none", ["--no-cache"]), ("made", []), ("used", [])):
                status, seconds, peak, text = run(folder, environment, more)
                print(f"| {name} | {index} | {seconds:.2f} | {peak:.0f} MB |", flush=True)
                if status != 0 or "The rest is shown" not in text or peak > MOST_MEGABYTES:
                    failures.append(f"{name}, index {index}: exit {status}, {peak:.0f} MB")
            for line in text.splitlines():
                if line.startswith("quorvel: "):
                    print(f"    {line.replace(top, '...')}", flush=True)
            (folder / "closed").exists() and (folder / "closed").chmod(0o700)
    if failures:
        sys.exit("limits: " + "; ".join(failures))


if __name__ == "__main__":
    main()
