"""Prints where the time of a start goes, called by bench/start.

What the system counts (libraries, relocations, opens, faults, memory) is read from strace, the
loader's own statistics and the process. The phases come from samples of the processor with call
stacks: a sample belongs to the innermost function that the loader or this program's sources
contain, and to the phase of the folder that the function's source is in. Shares of samples are
multiplied by the processor time of starts that nothing watches.
"""

import collections
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
BENCH = TOP / "build/bench/bench"
NOW = "2026-03-10T10:00:00+01:00"
ZONE = "Europe/Berlin"
SETTLING = 2.2  # seconds after which a file that was written is trusted by its times
SAMPLES_A_SECOND = 2999
STACK_BYTES = 16384
LIBRARIES_LISTED = 10
FEWEST_FOLLOWED = 0.75  # of the stacks of a process
FEWEST_PROCESSES = 7  # whose stacks are followed
MOST_RECORDINGS = 20

LOADER = "the loader"
CONSTRUCTORS = "libraries' constructors"
BEGINNING = "the kernel begins the process"
END = "the end of the process"
REST = "libraries, called by no folder"
UNKNOWN = "unknown: the stack could not be followed"
# The first folder that a source lies in decides.
PHASES = (
    ("settings", ("freedesktop/preferences",)),
    ("calendars", ("freedesktop/calendars", "icalendar")),
    ("dates", ("freedesktop/dates",)),
    ("text", ("freedesktop/text",)),
    ("pictures", ("freedesktop/graphics", "freedesktop/rendering")),
    ("the widget", ("agenda", "cell", "drawing", "hosting", "platform")),
    ("the window", ("shells/window", "shells/gtk", "shells/host", "shells/live")),
    ("output", ("shells", "freedesktop/plain_text", "freedesktop/log")),
    ("the command and its services", ("app", "freedesktop")),
)
# These work for whoever calls them.
SHARED_FOLDERS = ("base", "freedesktop/io", "freedesktop/glib")


def row(*cells):
    print("| " + " | ".join(str(cell) for cell in cells) + " |", flush=True)


def header(title, *cells):
    print(f"\n### {title}\n", flush=True)
    row(*cells)
    row(*("---" for _ in cells))


def fail(message):
    sys.exit(f"start: {message}")


# The phases of a build.

def phase_of(folder):
    if folder.startswith(SHARED_FOLDERS):
        return None
    for phase, folders in PHASES:
        if folder.startswith(folders):
            return phase
    return None


def plain_symbol(name):
    """Without what the compiler appends to a part of a function."""
    return name.split(".")[0]


def phases_by_symbol(build):
    """Symbols that only one phase's objects define; what several define is nobody's."""
    objects = sorted(str(path.relative_to(build)) for path in build.rglob("*.o"))
    listing = subprocess.run(["nm", "--defined-only", "-A", *objects], cwd=build, check=True,
                             capture_output=True, text=True).stdout
    found = collections.defaultdict(set)
    for line in listing.splitlines():
        place, _, rest = line.partition(".o:")
        words = rest.split()
        if len(words) == 3 and words[1] in "tTwW":
            found[plain_symbol(words[2])].add(phase_of(place.split("/CMakeFiles/")[0]))
    return {name: min(phases) for name, phases in found.items()
            if len(phases) == 1 and None not in phases}


class Build:
    """A folder with a release build."""

    def __init__(self, folder):
        self.folder = folder
        if not (folder / "quorvel").is_file():
            fail(f"there is no release build in {folder}")
        self.phases = phases_by_symbol(folder)


# One run, undisturbed.

Run = collections.namedtuple("Run", "seconds processor faults megabytes")


class Command:
    """A command that ends by itself."""

    program = "quorvel"
    has_phases = True

    def __init__(self, title, arguments, environment):
        self.title = title
        self.arguments = [str(argument) for argument in arguments]
        self.environment = environment

    def words(self, program):
        return [str(program), *self.arguments]

    def run(self, program):
        output = subprocess.run([BENCH / "time_command", *self.words(program)],
                                env=self.environment, stdin=subprocess.DEVNULL, check=True,
                                capture_output=True, text=True).stdout
        seconds, processor, faults, kilobytes = output.split()
        return Run(float(seconds), float(processor), int(faults), int(kilobytes) / 1024)

    def run_under(self, tool, program, environment=None):
        subprocess.run([*tool, *self.words(program)], env=environment or self.environment,
                       check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)

    def run_often_under(self, tool, program, times):
        loop = f'i=0; while [ $i -lt {times} ]; do "$@"; i=$((i + 1)); done'
        subprocess.run([*tool, "sh", "-c", loop, "sh", *self.words(program)],
                       env=self.environment, check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def processor_seconds(process):
    """Of all threads of another process."""
    processes_scheduled_time = 2
    return time.clock_gettime((~process << 3) | processes_scheduled_time)


def status_value(process, name):
    text = pathlib.Path(f"/proc/{process}/status").read_text()
    return int(re.search(rf"^{name}:\s+(\d+)", text, re.M).group(1))


class WindowCommand(Command):
    """The command that starts the window's program in its place, until the first picture."""

    has_phases = False  # stacks cannot be followed in a process that has been two programs

    def run(self, program):
        with subprocess.Popen([BENCH / "window_bench", "first", *self.words(program)],
                              env=self.environment, stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, text=True) as watcher:
            words = watcher.stdout.readline().split()
            if len(words) != 2:
                fail(f"no picture of {program}")
            process = int(words[0])
            fields = pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()
            run = Run(float(words[1]), processor_seconds(process), int(fields[7]),
                      status_value(process, "VmHWM") / 1024)
        return run

    def run_under(self, tool, program, environment=None):
        # A tracer beside the program, as window_bench stops and ends the process that it starts.
        self._watch([*tool, *self.words(program)], [], environment or self.environment)

    def run_often_under(self, tool, program, times):
        loop = f'i=0; while [ $i -lt {times} ]; do "$@" </dev/null; i=$((i + 1)); done'
        self._watch(self.words(program), [*tool, "sh", "-c", loop, "sh"], self.environment)

    def _watch(self, words, tool, environment):
        subprocess.run([*tool, BENCH / "window_bench", "first", *words], env=environment,
                       check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)


class WindowProgram(WindowCommand):
    """The window's program alone."""

    program = "quorvel-window"
    has_phases = True


# What strace and the loader count.

Counts = collections.namedtuple("Counts", "libraries opens failed_loader failed_others")

CALL = re.compile(r"^(\w+)\(.*\) += (-?\d+)(?:<.*>)?(?: (\w+))?")
MAPPED = re.compile(r"^mmap\(.*PROT_EXEC.*\d<(.*)>, ")


def trace_lines(command, program, folder, options):
    """The lines of each thread, one thread after the other."""
    command.run_under(["strace", "-D", "-ff", *options, "-o", str(folder / "trace")], program)
    time.sleep(0.5)  # the tracer ends by itself after the program
    lines = []
    for path in folder.glob("trace.*"):
        lines += path.read_text(errors="replace").splitlines()
        path.unlink()
    return lines


def failed_calls(lines):
    """How many calls of the loader, and of others, found no file. A call's stack follows it."""
    failed = collections.Counter()
    is_next_the_caller = False
    for line in lines:
        if is_next_the_caller:
            failed["/ld-linux" in line.split("(")[0]] += 1
        call = CALL.match(line)
        is_next_the_caller = call is not None and call.group(3) == "ENOENT"
    return failed[True], failed[False]


def traced(command, program, folder):
    libraries = set()
    opens = 0
    for line in trace_lines(command, program, folder, ["-y", "-e", "trace=%file,mmap"]):
        call = CALL.match(line)
        mapped = MAPPED.search(line)
        if mapped is not None:
            libraries.add(mapped.group(1))
        elif call is not None and call.group(1).startswith("open"):
            opens += int(call.group(2)) >= 0
    # Stacks take long, so that only the calls that fail are printed with theirs.
    failed = failed_calls(trace_lines(command, program, folder, ["-Z", "-k", "-e", "trace=%file"]))
    return Counts(len(libraries), opens, *failed)


Relocations = collections.namedtuple("Relocations", "symbols relative share_of_loader")


def symbols_relocated(text):
    """Those of modules that are loaded later too, which only a process that ends by itself reports."""
    final = re.findall(r"\t *final number of relocations: (\d+)", text)
    return sum(map(int, final or re.findall(r"\t *number of relocations: (\d+)", text)))


def relocated(command, program, folder):
    """What the loader does, mostly before the first function of each program; `show` is two."""
    prefix = folder / "statistics"
    command.run_under([], program, {**command.environment, "LD_DEBUG": "statistics",
                                    "LD_DEBUG_OUTPUT": str(prefix)})
    texts = [path.read_text() for path in folder.glob("statistics.*")]
    for path in folder.glob("statistics.*"):
        path.unlink()
    symbols = sum(map(symbols_relocated, texts))
    relative, relocating, loading = (
        sum(int(number) for number in re.findall(rf"\t *{what}: (\d+)", "".join(texts)))
        for what in ("number of relative relocations", "time needed for relocation",
                     "total startup time in dynamic loader"))
    return Relocations(symbols, relative, relocating / loading)


# The samples.

Frame = collections.namedtuple("Frame", "symbol library")

FRAME = re.compile(r"^\s+[0-9a-f]+ (.*?) \((.*)\)$")
HEAD = re.compile(r"^(.*?)\s+(\d+)/\d+")
HELPERS = ("sh", "perf", "perf-exec", "window_bench")
BEGINNING_FUNCTIONS = ("__x64_sys_execve", "ret_from_fork", "schedule_tail")
END_FUNCTIONS = ("exit", "__GI_exit", "__run_exit_handlers", "_exit", "__GI__exit", "_dl_fini",
                 "do_exit", "do_group_exit")
CONSTRUCTOR_CALLERS = ("call_init", "_dl_init")
OUTERMOST_FUNCTIONS = ("_start", "clone", "clone3", "__clone", "__clone3", "start_thread",
                       "__libc_start_call_main")


def is_kernel(frame):
    return frame.library == "[kernel.kallsyms]" or frame.symbol.endswith("@kernel")


def own_phase(frame, phases):
    if frame.symbol.startswith(("_GLOBAL__sub_I", "_Z41__static_initialization")):
        return CONSTRUCTORS
    return phases.get(frame.symbol)


def phase_of_stack(stack, phases):
    """The stack's innermost function comes first."""
    symbols = {frame.symbol for frame in stack}
    if not symbols.isdisjoint(END_FUNCTIONS):
        return END
    for frame in stack:
        if "/ld-linux" in frame.library:
            return CONSTRUCTORS if frame.symbol in CONSTRUCTOR_CALLERS else LOADER
        phase = own_phase(frame, phases)
        if phase is not None:
            return phase
    if not symbols.isdisjoint(BEGINNING_FUNCTIONS):
        return BEGINNING
    return REST if is_followed(stack) else UNKNOWN


def place_of_stack(stack):
    """The library whose code ran, or what the kernel did."""
    if not is_kernel(stack[0]):
        return pathlib.Path(stack[0].library).name
    symbols = {frame.symbol for frame in stack}
    return "kernel: page faults" if "asm_exc_page_fault" in symbols else "kernel: system calls"


class Samples:
    """How many samples of a command are of which phase, and of which library."""

    def __init__(self, phases):
        self._phases = phases
        self.by_phase = collections.Counter()
        self.by_place = collections.Counter()

    def add(self, stack, leaves_out_end):
        phase = phase_of_stack(stack, self._phases)
        if phase == END and leaves_out_end:
            return
        self.by_phase[phase] += 1
        self.by_place[place_of_stack(stack)] += 1

    def total(self):
        return sum(self.by_phase.values())


def stacks_by_process(text):
    """Of all processes but those that start and watch the command."""
    stacks = collections.defaultdict(list)
    for sample in text.split("\n\n"):
        lines = sample.strip("\n").splitlines()
        head = HEAD.match(lines[0].strip()) if lines else None
        if head is None or head.group(1) in HELPERS:
            continue
        frames = (FRAME.match(line) for line in lines[1:])
        stacks[head.group(2)].append([Frame(plain_symbol(frame.group(1)), frame.group(2))
                                      for frame in frames if frame])
    return stacks


def is_followed(stack):
    return is_kernel(stack[-1]) or stack[-1].symbol in OUTERMOST_FUNCTIONS


def followed_processes(text):
    """perf cannot follow the stacks of some processes at all, whatever they do: without those."""
    for stacks in stacks_by_process(text).values():
        stacks = [stack for stack in stacks if stack]
        if sum(map(is_followed, stacks)) >= len(stacks) * FEWEST_FOLLOWED:
            yield stacks


def recorded_text(command, build, folder, runs):
    data = folder / "samples"
    command.run_often_under(["perf", "record", "-e", "cpu-clock", "-F", str(SAMPLES_A_SECOND),
                             "--call-graph", f"dwarf,{STACK_BYTES}", "-o", str(data), "--"],
                            build.folder / command.program, runs)
    text = subprocess.run(["perf", "script", "--no-demangle", "--no-inline", "-F",
                           "comm,pid,tid,time,ip,sym,dso", "-i", str(data)], check=True,
                          capture_output=True, text=True).stdout
    data.unlink()
    return text


def sampled(command, build, folder, runs):
    samples = Samples(build.phases)
    processes = 0
    for _ in range(MOST_RECORDINGS):
        for stacks in followed_processes(recorded_text(command, build, folder, runs)):
            processes += 1
            for stack in stacks:
                samples.add(stack, leaves_out_end=isinstance(command, WindowCommand))
        if processes >= FEWEST_PROCESSES:
            return samples
    fail(f"perf cannot follow the stacks of {command.title}")


# The tables.

class Measured:
    """Everything about a command with one build."""

    def __init__(self, command, build, folder, runs):
        program = build.folder / command.program
        self.counts = traced(command, program, folder)
        self.relocations = relocated(command, program, folder)
        self.samples = sampled(command, build, folder, runs) if command.has_phases else None
        self.runs = []

    def median(self, figure):
        return statistics.median(getattr(run, figure) for run in self.runs)

    def milliseconds(self, count):
        return self.median("processor") * 1000 * count / self.samples.total()


def run_in_turn(command, builds, measured, runs):
    for i in range(-1, runs):
        for build, side in zip(builds, measured):
            run = command.run(build.folder / command.program)
            if i >= 0:  # the first round only warms the caches
                side.runs.append(run)


def ratio_text(now, before):
    return "" if before == 0 else f"{now / before:.2f}"


class Table:
    """Rows of values: now and, with a second build, before and their ratio."""

    def __init__(self, title, measured):
        self._measured = measured
        columns = ("", "now", "before", "ratio") if len(measured) > 1 else ("", "now")
        header(title, *columns)

    def add(self, name, value, form="{:,.0f}"):
        values = [value(side) for side in self._measured]
        ratio = [ratio_text(*values)] if len(values) > 1 else []
        row(name, *(form.format(number) for number in values), *ratio)


def print_times(table):
    table.add("time", lambda side: side.median("seconds") * 1000, "{:.2f} ms")
    table.add("processor time", lambda side: side.median("processor") * 1000, "{:.2f} ms")


def print_phases(table, measured):
    phases = [BEGINNING, LOADER, CONSTRUCTORS, *(name for name, _ in PHASES), REST, UNKNOWN, END]
    for phase in phases:
        if any(side.samples.by_phase[phase] for side in measured):
            table.add(f"of this: {phase}",
                      lambda side, phase=phase: side.milliseconds(side.samples.by_phase[phase]),
                      "{:.2f} ms")


def print_counts(table):
    table.add("libraries mapped", lambda side: side.counts.libraries)
    table.add("relocations by name", lambda side: side.relocations.symbols)
    table.add("relative relocations before main()", lambda side: side.relocations.relative)
    table.add("relocation's share of the loader's time before main()",
              lambda side: side.relocations.share_of_loader * 100, "{:.0f} %")
    table.add("opens", lambda side: side.counts.opens)
    table.add("paths not there, asked for by the loader", lambda side: side.counts.failed_loader)
    table.add("paths not there, asked for by others", lambda side: side.counts.failed_others)
    table.add("page faults", lambda side: side.median("faults"))
    table.add("peak memory", lambda side: side.median("megabytes"), "{:.1f} MB")


def print_libraries(command, measured):
    table = Table(f"{command.title}: processor time by library", measured)
    for place, _ in measured[0].samples.by_place.most_common(LIBRARIES_LISTED):
        table.add(place, lambda side: side.milliseconds(side.samples.by_place[place]), "{:.2f} ms")


def measure(command, builds, folder, runs):
    measured = [Measured(command, build, folder, runs) for build in builds]
    run_in_turn(command, builds, measured, runs)
    table = Table(command.title, measured)
    print_times(table)
    if command.has_phases:
        print_phases(table, measured)
    print_counts(table)
    if command.has_phases:
        print_libraries(command, measured)


def compare_with_peer(side, command, build, peer, peer_program, runs):
    pairs = []
    for i in range(-1, runs):
        pair = peer.run(peer_program), command.run(build.folder / command.program)
        if i >= 0:
            pairs.append(pair)
    row(f"{command.title}, {side}", peer.title,
        *(f"{statistics.median(run.seconds for run in side) * 1000:.2f} ms"
          for side in (list(zip(*pairs))[1], list(zip(*pairs))[0])),
        f"{statistics.median(own.seconds / other.seconds for other, own in pairs):.2f}",
        f"{statistics.median(own.processor / other.processor for other, own in pairs):.2f}")


def commands(folder, environment):
    calendars = folder / "calendars"
    subprocess.run([BENCH / "make_calendars", "files", calendars, "1000", "5"], check=True)
    place = ("--timezone", "UTC", "--locale", "en_US")
    desktop = {**environment, "DISPLAY": os.environ["DISPLAY"],
               "DBUS_SESSION_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"]}
    show = ["show", "--sample", *place]
    return [
        Command("quorvel --version", ["--version"], environment),
        Command("quorvel agenda --sample", ["agenda", "--sample", *place], environment),
        Command("quorvel agenda, 1,000 events, index warm",
                ["agenda", "--calendars", calendars, "--now", NOW, "--timezone", ZONE,
                 "--locale", "en_GB"], environment),
        Command("quorvel snapshot --sample --scale 2",
                ["snapshot", "--sample", *place, "-o", folder / "picture.png", "--scale", "2"],
                environment),
        WindowProgram("quorvel-window show --sample, the program of quorvel show", show, desktop),
        WindowCommand("quorvel show --sample", show, desktop),
    ]


def main():
    runs = int(sys.argv[1])
    builds = [Build(pathlib.Path(folder)) for folder in sys.argv[2:]]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        environment = {"PATH": os.environ["PATH"], "HOME": str(folder), "LANG": "C.UTF-8",
                       "XDG_RUNTIME_DIR": str(folder)}
        todo = commands(folder, environment)
        time.sleep(SETTLING)
        for command in todo:
            for build in builds:  # each build has an index of its own version
                command.run(build.folder / command.program)
        for command in todo:
            measure(command, builds, folder, runs)
        header("Beside the least that there can be", "what", "beside", "time", "beside it",
               "ratio", "ratio of processor time")
        version, window = todo[0], todo[-1]
        line = Command("a program that prints a line", [], environment)
        empty = WindowCommand("an empty window", [], window.environment)
        for side, build in zip(("now", "before"), builds):
            compare_with_peer(side, version, build, line, BENCH / "print_line", runs)
            compare_with_peer(side, window, build, empty, BENCH / "empty_window", runs)


if __name__ == "__main__":
    main()
