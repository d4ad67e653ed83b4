#!/usr/bin/python3
"""Holds what `quorvel agenda --json` finds in calendars from elsewhere against a second reader.

The second reader is Debian's python3-recurring-ical-events upon python3-icalendar. Each calendar
is searched in several windows of a year around its events, in several zones. Where the readers
differ for a known reason, the list of differences says so; a difference that is not listed fails,
and so does a listed one that is no more. docs/calendars.md explains the reasons.

Exit status: 0 they agree as listed, 1 they do not, 2 wrong usage, 77 skipped.
"""

import argparse
import bisect
import collections
import datetime
import json
import multiprocessing
import os
import pathlib
import re
import resource
import select
import signal
import subprocess
import sys
import tempfile
import time
import zlib
import zoneinfo

SKIPPED = 77
ZONES = ("UTC", "Europe/Berlin", "America/New_York", "Asia/Kathmandu", "Pacific/Apia")
COLUMNS = ("file", "zone", "difference", "reason")
ALL_ZONES = "*"

NOT_READ = 1  # the program's exit status where a file holds no calendar; it shows none then
PROGRAM_SECONDS = 20
PROGRAM_BYTES = 2 << 30
READER_SECONDS = 120  # for one file, in all zones and windows
READER_BYTES = 1 << 30
UID_SECONDS = 20  # of processor time, for the events of one UID
DAY = 86400
TEMPLATE_DAY = datetime.date(2005, 6, 15)  # some templates name days of 2006 as well

PREFERENCES = """<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>daysToDisplay</key><integer>{days}</integer></dict></plist>
"""

Occurrence = collections.namedtuple("Occurrence", "start end all_day title")
# `days` are those after the first one, as the widget counts them.
Window = collections.namedtuple("Window", "first days")


# ---- what is searched


def calendar_files(corpus):
    return sorted(path for folder in corpus.glob("ics-*") for path in folder.rglob("*.ics"))


def filled_in(content):
    """Some are templates, which their suites fill in with dates around the present."""

    def year(match):
        return b"%04d" % (TEMPLATE_DAY.year + int(match[1] or 0))

    def day(match):
        return (TEMPLATE_DAY + datetime.timedelta(days=int(match[1]))).strftime("%Y%m%d").encode()

    content = re.sub(rb"\$now\.year\.(-?\d+):", year, content)
    content = re.sub(rb"\$now\.(-?\d+):", day, content)
    return re.sub(rb"%\(now([+-]\d+)?\)s", year, content)


def days_named(text):
    """The days that the events name, their zones' definitions apart."""
    text = re.sub(r"BEGIN:VTIMEZONE.*?END:VTIMEZONE", "", text, flags=re.S | re.I)
    days = []
    lines = r"^(?:DTSTART|DTEND|RDATE|RECURRENCE-ID|EXDATE)\b[^\r\n]*|\bUNTIL=\d{8}"
    for line in re.findall(lines, text, flags=re.M | re.I):
        for year, month, day in re.findall(r"(?<!\d)(\d{4})(\d\d)(\d\d)(?!\d)", line):
            try:
                days.append(datetime.date(int(year), int(month), int(day)))
            except ValueError:
                pass
    # Neither reader's zones are known for more.
    return sorted(day for day in days if 1900 <= day.year <= 2100)


def windows_of(content):
    text = content.decode("utf-8", "replace").replace("\r", "\n")
    days = days_named(text)
    if not days:
        return []
    if re.search(r"FREQ=(SECONDLY|MINUTELY)", text, flags=re.I):
        length = 2
    elif re.search(r"FREQ=HOURLY|BYHOUR=|BYMINUTE=|BYSECOND=", text, flags=re.I):
        length = 30
    else:
        length = 366
    before = datetime.timedelta(days=min(5, length // 2))
    starts = [days[0] - before, days[0].replace(day=1) + datetime.timedelta(days=7 * 365)]
    reached = starts[0] + datetime.timedelta(days=length)
    if days[-1] > reached:
        starts.append(days[-1] - datetime.timedelta(days=length // 2))
    middle = days[bisect.bisect(days, reached):]
    if middle:
        starts.append(middle[len(middle) // 2] - before)
    return [Window(start, length) for start in sorted(set(starts))]


def instants_of(window, zone):
    """Both ends of the search, as the widget makes them."""
    first = datetime.datetime.combine(window.first, datetime.time(), zone)
    last = datetime.datetime.combine(window.first, datetime.time(23, 59, 59), zone)
    return first.timestamp(), last.timestamp() + window.days * DAY


def belongs(occurrence, begin, end):
    return (occurrence.end > begin or occurrence.start == begin) and occurrence.start <= end


# ---- the second reader


class OutOfTime(Exception):
    pass


def limit_self(limits):
    for which, value in limits:
        resource.setrlimit(which, (value, value))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def first_of(value):
    return value[0] if isinstance(value, list) else value


def text_of(component, name):
    value = first_of(component.get(name))
    return None if value is None else str(value)


def events_by_uid(calendars):
    """One calendar for each UID; events without one stand alone."""
    import icalendar

    groups = {}
    for number, calendar in enumerate(calendars):
        if str(calendar.get("METHOD", "")).strip().upper() == "CANCEL":
            continue  # both readers are asked for what takes place
        for place, event in enumerate(calendar.walk("VEVENT")):
            uid = text_of(event, "UID")
            key = uid.strip() if uid and uid.strip() else (number, place)
            if key not in groups:
                groups[key] = icalendar.Calendar()
                for name in ("X-WR-TIMEZONE", "CALSCALE"):
                    if name in calendar:
                        groups[key][name] = calendar[name]
            groups[key].add_component(event)
    return groups


def occurrence_of(event, zone):
    """What belongs to no difference of the readers: a date lasts one day at least, and its end is
    its last second."""
    start, end = event["DTSTART"].dt, event["DTEND"].dt
    all_day = not isinstance(start, datetime.datetime)
    if all_day:
        last = max(end - datetime.timedelta(days=1), start)
        start = datetime.datetime.combine(start, datetime.time())
        end = datetime.datetime.combine(last, datetime.time(23, 59, 59))

    def instant(moment):
        return (moment if moment.tzinfo else moment.replace(tzinfo=zone)).timestamp()

    return Occurrence(int(instant(start)), int(instant(end)), all_day, text_of(event, "SUMMARY"))


def expand_group(group, zones, windows):
    import recurring_ical_events

    unfolded = recurring_ical_events.of(group)
    margin = datetime.timedelta(days=2)
    found = {}
    for zone_name in zones:
        zone = zoneinfo.ZoneInfo(zone_name)
        for index, window in enumerate(windows):
            begin, end = instants_of(window, zone)
            events = unfolded.between(
                datetime.datetime.fromtimestamp(begin, zone) - margin,
                datetime.datetime.fromtimestamp(end, zone) + margin,
            )
            occurrences = [
                occurrence_of(event, zone)
                for event in events
                if (text_of(event, "STATUS") or "").strip().upper() != "CANCELLED"
            ]
            found[zone_name, index] = [one for one in occurrences if belongs(one, begin, end)]
    return found


def within_time(call, *arguments):
    def expired(*_):
        raise OutOfTime()

    signal.signal(signal.SIGVTALRM, expired)
    signal.setitimer(signal.ITIMER_VIRTUAL, UID_SECONDS)
    try:
        return call(*arguments)
    finally:
        signal.setitimer(signal.ITIMER_VIRTUAL, 0)


def events_and_zones(content):
    """Without the components that hold no events: the reader gives a file up for any of them. It
    knows no line that ends with a carriage return."""
    if b"\n" not in content:
        content = content.replace(b"\r", b"\n")
    for name in (b"VALARM", b"VFREEBUSY", b"VJOURNAL", b"VTODO"):
        content = re.sub(rb"^BEGIN:%s\r?\n.*?^END:%s\r?(\n|\Z)" % (name, name), b"", content,
                         flags=re.S | re.M)
    return content


def parsed(content):
    """Twice: the reader knows a zone's definition from where it stands on, and their order is
    free."""
    import icalendar

    icalendar.Calendar.from_ical(content, multiple=True)
    return icalendar.Calendar.from_ical(content, multiple=True)


def second_reading(content, zones, windows):
    """Occurrences by zone and window, and the events that the reader gives up on."""
    try:
        groups = events_by_uid(within_time(parsed, events_and_zones(content)))
    except Exception as problem:  # whatever it is, it is the reader's
        return {"unread": type(problem).__name__}
    found = {zone: [[] for _ in windows] for zone in zones}
    refused = []
    for uid, group in groups.items():
        try:
            expanded = within_time(expand_group, group, zones, windows)
        except Exception as problem:
            titles = [text_of(event, "SUMMARY") for event in group.walk("VEVENT")]
            refused.append([uid if isinstance(uid, str) else None, titles, type(problem).__name__])
            continue
        for (zone, index), occurrences in expanded.items():
            found[zone][index] += occurrences
    return {"found": found, "refused": refused}


def read_all(descriptor, deadline):
    content = b""
    while True:
        ready, _, _ = select.select([descriptor], [], [], max(deadline - time.monotonic(), 0))
        if not ready:
            return None
        part = os.read(descriptor, 1 << 20)
        if not part:
            return content
        content += part


def ask_second_reader(content, zones, windows):
    """In a process of its own, which may not go beyond its time and memory."""
    result, answer = os.pipe()
    child = os.fork()
    if child == 0:
        status = 1
        try:
            os.close(result)
            limit_self([(resource.RLIMIT_CPU, READER_SECONDS), (resource.RLIMIT_AS, READER_BYTES)])
            os.dup2(os.open(os.devnull, os.O_WRONLY), 2)
            with os.fdopen(answer, "w") as stream:
                json.dump(second_reading(content, zones, windows), stream)
            status = 0
        finally:
            os._exit(status)
    os.close(answer)
    try:
        text = read_all(result, time.monotonic() + READER_SECONDS)
    finally:
        os.close(result)
        if os.waitpid(child, os.WNOHANG)[0] == 0:
            if text is None:
                os.kill(child, signal.SIGKILL)
            os.waitpid(child, 0)
    try:
        return json.loads(text or b"")
    except ValueError:
        return {"unread": "OutOfTime" if text is None else "died"}


# ---- the program


def environment_in(home):
    return {
        "HOME": home,
        "XDG_CONFIG_HOME": home,
        "XDG_DATA_HOME": home,
        "XDG_CACHE_HOME": home,
        "LC_ALL": "C.UTF-8",
        "PATH": "/usr/bin:/bin",
    }


def preferences_for(days, home):
    folder = pathlib.Path(home, f"days-{days}")
    if not folder.exists():
        # Several processes may come by here.
        with tempfile.TemporaryDirectory(dir=home) as prepared:
            name = "org.quorvel.quorvelprefs.plist"
            pathlib.Path(prepared, name).write_text(PREFERENCES.format(days=days))
            folder.mkdir(exist_ok=True)
            os.replace(pathlib.Path(prepared, name), folder / name)
    return str(folder)


def run_program(program, path, zone, window, home):
    """The rows of the agenda; a text instead where it gives none."""
    command = [program, "agenda", "--json", "--calendars", str(path), "--timezone", zone]
    command += ["--preferences", preferences_for(window.days, home)]
    command += ["--now", f"{window.first.isoformat()}T00:00:00", "--log", os.devnull]
    limits = [(resource.RLIMIT_CPU, PROGRAM_SECONDS), (resource.RLIMIT_AS, PROGRAM_BYTES)]
    try:
        done = subprocess.run(
            command,
            env=environment_in(home),
            stdin=subprocess.DEVNULL,
            capture_output=True,
            timeout=PROGRAM_SECONDS,
            preexec_fn=lambda: limit_self(limits),
            check=False,
        )
    except subprocess.TimeoutExpired:
        return "takes too long"
    if done.returncode not in (0, NOT_READ):
        return f"exit status {done.returncode}"
    try:
        return json.loads(done.stdout)
    except ValueError:
        return "gives no JSON"


def row_occurrence(row):
    def instant(text):
        return int(datetime.datetime.fromisoformat(text).timestamp())

    return Occurrence(instant(row["start"]), instant(row["end"]), row["allDay"], row["title"])


def is_refused(row, refused):
    """Whether the row belongs to an event that the second reader gave up on. A link holds the UID
    with slashes for colons; a UID that makes no link is told by its title."""
    for uid, titles, _ in refused:
        if row["url"] is None:
            if row["title"] in titles:
                return True
        elif uid is None:
            if "/no-uid-" in row["url"]:
                return True
        elif "/" + uid.replace(":", "/").split("/RID")[0] + "?o=" in row["url"]:
            return True
    return False


# ---- what differs


def without_common(ours, theirs, key):
    """What is left of both when those with the same key are taken out in pairs."""
    counts = collections.Counter(map(key, ours)) & collections.Counter(map(key, theirs))

    def rest(occurrences):
        left, kept = counts.copy(), []
        for one in occurrences:
            if left[key(one)] > 0:
                left[key(one)] -= 1
            else:
                kept.append(one)
        return kept

    return rest(ours), rest(theirs), sum(counts.values())


def count_differences(ours, theirs, counts):
    ours, theirs, _ = without_common(ours, theirs, lambda one: one)
    for name, key in (
        ("other end", lambda one: (one.start, one.all_day, one.title)),
        ("other title", lambda one: (one.start, one.end, one.all_day)),
    ):
        ours, theirs, counts_here = without_common(ours, theirs, key)
        counts[name] += counts_here
    counts["only ours"] += len(ours)
    counts["only theirs"] += len(theirs)
    return ours, theirs


def described(counts):
    return ", ".join(f"{name} {number}" for name, number in sorted(counts.items()) if number)


def compare_file(job):
    """The difference by zone, and what is to be shown of it."""
    name, zones, settings = job
    original = settings.corpus / name
    content = filled_in(original.read_bytes())
    windows = windows_of(content)
    if not windows:
        return name, {}, {}, 0
    with tempfile.TemporaryDirectory(dir=settings.home) as folder:
        path = original
        if content != original.read_bytes():
            path = pathlib.Path(folder, original.name)
            path.write_bytes(content)
        return (name, *compare_content(content, path, windows, zones, settings))


def compare_content(content, path, windows, zones, settings):
    second = ask_second_reader(content, zones, windows)
    differences, examples, compared = {}, {}, 0
    for zone in zones:
        counts, shown = collections.Counter(), []
        for index, window in enumerate(windows):
            rows = run_program(settings.program, path, zone, window, settings.home)
            if isinstance(rows, str):
                counts["quorvel: " + rows] += 1
                continue
            if "unread" in second:
                counts["unread by the other: " + second["unread"]] = 1
                continue
            refused = second["refused"]
            ours = [row_occurrence(row) for row in rows if not is_refused(row, refused)]
            theirs = [Occurrence(*one) for one in second["found"][zone][index]]
            compared += len(ours)
            left = count_differences(ours, theirs, counts)
            shown += [("ours", one) for one in left[0]] + [("theirs", one) for one in left[1]]
        for _, _, problem in second.get("refused", []):
            counts["refused by the other: " + problem] += 1
        differences[zone] = described(counts)
        examples[zone] = [f"{whose} {shown_occurrence(one, zone)}" for whose, one in shown[:8]]
    return differences, examples, compared


def shown_occurrence(one, zone):
    def reading(instant):
        moment = datetime.datetime.fromtimestamp(instant, zoneinfo.ZoneInfo(zone))
        return moment.strftime("%Y%m%dT%H%M%S%z")

    kind = "all day" if one.all_day else "timed"
    return f"{reading(one.start)} - {reading(one.end)} {kind} {one.title!r}"


# ---- the list


def read_list(path):
    """What is listed, by file and zone."""
    listed = {}
    with open(path, encoding="utf-8") as stream:
        lines = [line.rstrip("\n") for line in stream if line.strip() and not line.startswith("#")]
    if not lines or tuple(lines[0].split("\t")) != COLUMNS:
        raise ValueError(f"{path}: its first line is not the columns' names")
    for line in lines[1:]:
        fields = line.split("\t")
        if len(fields) != len(COLUMNS) or not all(fields):
            raise ValueError(f"{path}: not four fields: {line}")
        key = fields[0], fields[1]
        if key in listed:
            raise ValueError(f"{path}: listed twice: {line}")
        listed[key] = fields[2], fields[3]
    return listed


def expected_difference(listed, name, zone):
    difference, _ = listed.get((name, zone)) or listed.get((name, ALL_ZONES)) or ("", "")
    return difference


def check_reasons(listed, page):
    """Each reason stands in the page, with who is right by the RFC."""
    explained = set(re.findall(r"^\| `([a-z0-9-]+)` \|", page.read_text(encoding="utf-8"), re.M))
    used = {reason for _, reasons in listed.values() for reason in reasons.split(", ")}
    return [f"{page}: nothing says what `{reason}` means" for reason in sorted(used - explained)]


def check_files(listed, names):
    return [f"listed, but not there: {name}" for name in sorted({n for n, _ in listed} - names)]


def write_list(path, listed, found):
    """Anew from what was found; reasons of before stay, others are to be given."""
    lines = ["\t".join(COLUMNS)]
    for name, by_zone in sorted(found.items()):
        differences = set(by_zone.values())
        rows = (
            {ALL_ZONES: differences.pop()}
            if len(differences) == 1 and len(by_zone) == len(ZONES)
            else by_zone
        )
        for zone, difference in rows.items():
            if difference:
                known = listed.get((name, zone)) or listed.get((name, ALL_ZONES))
                reason = known[1] if known else "?"
                lines.append("\t".join((name, zone, difference, reason)))
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")


# ---- all of it


def zones_for(name, options):
    """Two of them, chosen by the file's name, unless others are wanted."""
    if options.all_zones or options.zone:
        return ZONES if options.all_zones else options.zone
    first = zlib.crc32(name.encode())
    return ZONES[first % 5], ZONES[(first % 5 + 1 + first // 5 % 4) % 5]


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    here = pathlib.Path(__file__).resolve().parent
    parser.add_argument("--program", required=True, help="the built quorvel")
    parser.add_argument("--corpus", required=True, type=pathlib.Path, help="folder with ics-*")
    parser.add_argument("--only", default="", help="the files whose path contains this")
    parser.add_argument("--zone", action="append", choices=ZONES, help="each file in this zone")
    parser.add_argument("--all-zones", action="store_true", help="each file in all five zones")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument(
        "--differences", type=pathlib.Path, default=here / "reader_differences.tsv"
    )
    parser.add_argument(
        "--page", type=pathlib.Path, default=here.parents[3] / "docs" / "calendars.md"
    )
    parser.add_argument("--write", action="store_true", help="write the list of differences anew")
    options = parser.parse_args()
    if options.write and (options.only or not options.all_zones):
        parser.error("--write needs all files, and --all-zones")
    options.program = os.path.abspath(options.program)
    return options


def skip(why):
    print(f"compare_readers: skipped: {why}")
    return SKIPPED


def main():
    options = arguments()
    if not options.corpus.is_dir():
        return skip(f"there is no folder of calendars {options.corpus}")
    try:
        import recurring_ical_events  # noqa: F401, the children find it loaded
    except ImportError as problem:
        return skip(f"the second reader is missing ({problem}): "
                    "install python3-recurring-ical-events")
    listed = read_list(options.differences) if options.differences.exists() else {}
    paths = calendar_files(options.corpus)
    names = [str(path.relative_to(options.corpus)) for path in paths]
    chosen = [name for name in names if options.only in name]
    if not names:
        return skip(f"there are no calendars in {options.corpus}")
    if not chosen:
        print(f"compare_readers: no calendar's path contains {options.only!r}", file=sys.stderr)
        return 2

    failures = check_files(listed, set(names)) + (
        [] if options.write else check_reasons(listed, options.page))
    found, dateless, rows = {}, 0, 0
    began = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="quorvel-readers-") as home:
        options.home = home
        jobs = [(name, zones_for(name, options), options) for name in chosen]
        with multiprocessing.get_context("fork").Pool(options.jobs) as pool:
            for name, differences, examples, compared in pool.imap_unordered(compare_file, jobs):
                dateless += not differences
                found[name] = differences
                rows += compared
                for zone, difference in differences.items():
                    expected = expected_difference(listed, name, zone)
                    if difference != expected:
                        failures.append(
                            f"{name}, {zone}: {difference or 'no difference'}; "
                            f"listed: {expected or 'none'}"
                            + "".join("\n    " + line for line in examples[zone]))
    if options.write:
        write_list(options.differences, listed, found)
        failures = []
    for failure in failures:
        print(failure)
    differing = sum(any(by_zone.values()) for by_zone in found.values())
    print(f"{len(found)} calendars, {dateless} of them without a date to search around; "
          f"{rows} occurrences compared in {time.monotonic() - began:.0f} s; "
          f"{differing} calendars differ, {len(failures)} findings are not as listed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
