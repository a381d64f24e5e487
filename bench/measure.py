"""Runs the benchmarks and writes their table. Started by bench/run.sh.

Every row but those of the window is a ratio of two times (or of two sizes) taken within one run on one machine: A B A B ... after a
round that does not count, each pair gives a ratio, and the row shows the median of these. Before a program starts, its
input is made anew, all of it in the cache. The folder lies in memory where the machine has such a place, so that the
programs are measured and not the disk that they share with others; one pair of rows is taken on the disk as well.
"""
import argparse
import json
import os
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

KB, MB, GB = 1 << 10, 1 << 20, 1 << 30
MEMORY = "/dev/shm/"
GROUPS = ["tree", "disk", "form", "grammar", "conversion", "scanner", "window"]
REPETITIONS = 5  # of the grammar and the scanner
CLASSES = {  # what perl renames: the classes of the family bde
    "TDatabase": "TKVAConnection", "TQuery": "TKVAQuery", "TwwQuery": "TKVAQuery", "TTable": "TKVATable",
    "TwwTable": "TKVATable", "TStoredProc": "TKVAStoredProc", "TwwStoredProc": "TKVAStoredProc",
    "TUpdateSQL": "TKVAUpdateSQL", "EDBEngineError": "EKVAError", "TBatchMove": "THXBatchMove",
}


@dataclass
class Cost:
    """What one run of a program took."""
    seconds: float
    cpu: float  # user and system seconds
    peak: int   # bytes of memory


@dataclass
class Row:
    name: str
    value: float
    target: float
    at_most: bool  # else at least
    detail: str

    def met(self):
        return self.value <= self.target if self.at_most else self.value >= self.target


def run(command, temp, cwd=None):
    """Runs a program to its end, its temporary files in `temp`; a failure is an error that shows its output."""
    with tempfile.TemporaryFile() as output:
        start = time.perf_counter()
        process = subprocess.Popen(command, cwd=cwd, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                   env=os.environ | {"TMPDIR": temp})
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            output.seek(0)
            raise RuntimeError(f"{' '.join(map(str, command[:6]))}: status {process.returncode}\n"
                               + output.read().decode(errors="replace")[-2000:])
    return Cost(seconds, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * KB)


def pairs(rounds, first, second):
    """Runs two sides in turn; each is a function that prepares its input and gives the Cost. The first round warms up."""
    costs = [(first(), second()) for _ in range(rounds + 1)][1:]
    ratio = statistics.median(a.seconds / b.seconds for a, b in costs)
    cpu = statistics.median(a.cpu / max(b.cpu, 1e-3) for a, b in costs)
    one = statistics.median(a.seconds for a, _ in costs)
    two = statistics.median(b.seconds for _, b in costs)
    spread = [a.seconds / b.seconds for a, b in costs]
    return ratio, cpu, one, two, (min(spread), max(spread))


def form_rounds(rounds):
    """The large forms take longer."""
    return max(3, rounds // 2)


class Benchmarks:
    def __init__(self, build, folder, rounds, units):
        self.bin = os.path.join(build, "bench")
        self.program = os.path.join(build, "cli", "kvamigrate")
        self.folder, self.rounds, self.units = folder, rounds, units
        self.work = os.path.join(folder, "work")
        self.on_disk = not folder.startswith(MEMORY)

    def run(self, command, cwd=None):
        return run(command, self.folder, cwd)

    def fresh(self, tree):
        """A copy of the tree, all of it in the cache, none of it waiting for the disk, and nothing left to be done for it."""
        shutil.rmtree(self.work, ignore_errors=True)
        subprocess.run(["cp", "-a", tree, self.work], check=True)
        if self.on_disk:
            os.sync()
        time.sleep(0.3)  # the system clears up behind the tree that went

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def make(self, name, *arguments):
        tree, listed = self.path(name), self.path(name + ".list")
        if not os.path.exists(tree):
            self.run([os.path.join(self.bin, "kva_maketree"), tree, "--list", listed, *map(str, arguments)])
        return tree, listed

    def migrate(self, tree, *options):
        """One run over a fresh copy of the tree. A run that changed nothing is an error."""
        self.fresh(tree)
        cost = self.run([self.program, "replace", "--mode", "bde", "--folder", self.work, "--subfolders", *options])
        if not os.path.getsize(os.path.join(self.work, "RBackup", "RExpert.reu")):
            raise RuntimeError(f"the run over {tree} changed nothing")
        return cost

    # -- whole runs ------------------------------------------------------------------------------------------------

    def tree_rows(self):
        tree, listed = self.make("tree", "--units", self.units, "--forms", self.units)
        names = [os.path.join(d, f) for d, _, files in os.walk(tree) for f in files]
        size = sum(map(os.path.getsize, names))
        what = f"{self.units:,} units and {self.units:,} forms, {size / MB:.0f} MB, half of them changing"

        def bare():
            self.fresh(tree)
            return self.run([os.path.join(self.bin, "kva_barecopy"), self.work, listed])

        def perl():
            self.fresh(tree)
            table = ",".join(f"{old}=>'{new}'" for old, new in CLASSES.items())
            script = "BEGIN{%m=(" + table + r")} s/\b(" + "|".join(CLASSES) + r")\b/$m{$1}/g"
            files = [os.path.relpath(name, tree) for name in names]
            return self.run(["perl", "-pi.bak", "-e", script, *files], cwd=self.work)

        undo = os.path.join(self.work, "RBackup", "RExpert.reu")
        self.migrate(tree)
        with open(undo, encoding="utf-8") as lines, open(listed, encoding="utf-8") as expected:
            changed, due = sum(1 for _ in lines), sum(1 for _ in expected)
        if changed != due:
            raise RuntimeError(f"the run changed {changed} files of {due}")

        place = "on the disk" if self.on_disk else "in memory"
        ratio, cpu, ours, theirs, spread = pairs(self.rounds, lambda: self.migrate(tree), bare)
        yield Row(f"Whole run, beside the bare file operations: {place}", ratio, 1.25, True,
                  f"{what}; {ours:.2f} s to {theirs:.2f} s, pairs {spread[0]:.2f} to {spread[1]:.2f}, "
                  f"processor time {cpu:.2f}")
        ratio, cpu, ours, plain, spread = pairs(self.rounds, lambda: self.migrate(tree),
                                                lambda: self.migrate(tree, "--quiet"))
        yield Row(f"Whole run with findings, beside one without: {place}", ratio, 1.10, True,
                  f"the same tree; {ours:.2f} s to {plain:.2f} s, pairs {spread[0]:.2f} to {spread[1]:.2f}, "
                  f"processor time {cpu:.2f}")
        ratio, cpu, theirs, ours, spread = pairs(self.rounds, perl, lambda: self.migrate(tree))
        yield Row(f"`perl -pi.bak` renaming the classes, beside the whole run: {place}", ratio,
                  3, False,
                  f"the same tree; {theirs:.2f} s to {ours:.2f} s, pairs {spread[0]:.2f} to {spread[1]:.2f}, "
                  f"processor time {cpu:.2f}" + ("; perl flushes nothing to the disk" if self.on_disk else ""))

    def form_rows(self):
        kinds = (("text", []), ("lists", ["--lists"]), ("UTF-16", ["--utf16", 100]), ("binary", []))
        for kind, options in kinds:
            small, _ = self.make(f"small-{kind}", "--form", 5 * MB, "--objects", 2000, *options)
            large, _ = self.make(f"large-{kind}", "--form", 50 * MB, "--objects", 20000, *options)
            if kind == "binary":
                for tree in (small, large):
                    self.run([self.program, "form", "to-binary", "--in-place", tree])
            peaks = []

            def on_large():
                cost = self.migrate(large)
                peaks.append(cost.peak)
                return cost

            ratio, cpu, big, little, spread = pairs(form_rounds(self.rounds), on_large, lambda: self.migrate(small))
            size = os.path.getsize(os.path.join(large, "Big.dfm"))
            yield Row(f"A form of 50 MB, beside one of 5 MB: {kind}", ratio, 10, True,
                      f"20,000 and 2,000 objects to convert; {big:.2f} s to {little:.3f} s, "
                      f"pairs {spread[0]:.2f} to {spread[1]:.2f}")
            yield Row(f"Peak memory, beside the largest file: {kind}", max(peaks) / size, 4, True,
                      f"{max(peaks) / MB:.0f} MB for a form of {size / MB:.0f} MB")

    # -- parts -----------------------------------------------------------------------------------------------------

    def google(self, name, *options):
        """A program of the benchmark library: its results, the median of its repetitions under each name."""
        program = os.path.join(self.bin, name)
        if not os.path.exists(program):
            print(f"not built: {name}", file=sys.stderr)
            return {}
        output = self.path(name + ".json")
        self.run([program, f"--benchmark_out={output}", "--benchmark_out_format=json",
                  f"--benchmark_repetitions={REPETITIONS}", "--benchmark_report_aggregates_only=true", *options])
        with open(output, encoding="utf-8") as file:
            found = json.load(file)["benchmarks"]
        return {b["run_name"]: b for b in found if b.get("aggregate_name") == "median"}

    def grammar_rows(self):
        """Names are ROW/SIZE; a row is the time for each byte at its last size, by that at its first."""
        rows = {}
        for name, result in self.google("GrammarBench", "--benchmark_filter=/").items():
            row, size = name.split("/")
            rows.setdefault(row, []).append((int(size), result["bytes_per_second"]))
        for name, points in rows.items():
            points.sort()
            speeds = ", ".join(f"{speed / MB:.0f} ({size:,})" for size, speed in points)
            yield Row(f"Grammar, time a byte, last size by first: {name}", points[0][1] / points[-1][1], 1.5, True,
                      f"MB a second: {speeds}")

    def conversion_rows(self):
        """Both programs: text|binary INPUT OUTPUT REPEATS, on bare object streams; they print their fastest seconds."""
        ours, theirs = os.path.join(self.bin, "FormConversionBench"), self.path("fpcforms")
        if not os.path.exists(ours):
            print("not built: FormConversionBench", file=sys.stderr)
            return
        self.run(["fpc", "-O3", "-FU" + self.folder, "-o" + theirs, os.path.join("bench", "fpcforms.pas")])
        tree, _ = self.make("conversion", "--form", 15 * MB, "--objects", 6000)
        text, binary = os.path.join(tree, "Big.dfm"), self.path("conversion.bin")
        self.run([theirs, "binary", text, binary, "1"])
        for kind, source in (("binary", text), ("text", binary)):
            seconds, outputs = {ours: [], theirs: []}, {}
            for _ in range(self.rounds):
                for program in (theirs, ours):
                    output = self.path("conversion.out")
                    printed = subprocess.run([program, kind, source, output, "3"], check=True, capture_output=True)
                    seconds[program].append(float(printed.stdout.split()[-1]))
                    if kind == "text":  # the two lay text out differently: what both mean is compared
                        self.run([theirs, "binary", output, output + ".bin", "1"])
                        output += ".bin"
                    with open(output, "rb") as file:
                        outputs[program] = file.read()
            ratio = statistics.median(a / b for a, b in zip(seconds[theirs], seconds[ours]))
            size = os.path.getsize(source)
            yield Row(f"Free Pascal's conversion to {kind}, beside ours", ratio, 10, False,
                      f"a form of {size / MB:.0f} MB; {size / MB / statistics.median(seconds[theirs]):.0f} MB a second "
                      f"to {size / MB / statistics.median(seconds[ours]):.0f}; "
                      f"outputs {'equal' if outputs[ours] == outputs[theirs] else 'differ'}")

    def scanner_rows(self):
        results = self.google("ScannerBench")
        for text in ("unit", "form") if results else ():
            speed = {name: results[f"{name}/{text}"]["bytes_per_second"]
                     for name in ("Scanner", "MemoryCopy", "ByteLoop")}
            yield Row(f"Scanner, beside a byte loop: {text}", speed["ByteLoop"] / speed["Scanner"], 0, True,
                      f"{speed['Scanner'] / MB:.0f} MB a second; a byte loop {speed['ByteLoop'] / MB:.0f}, "
                      f"`memcpy` {speed['MemoryCopy'] / MB:.0f}")

    def window_rows(self):
        """The window without a screen. It prints, in seconds, what opening took, how long the window did not answer, and
        for a file also the longest step of scrolling through it."""
        program = os.path.join(self.bin, "OpenWindowBench")
        if not os.path.exists(program):
            print("not built: OpenWindowBench", file=sys.stderr)
            return
        tree, _ = self.make("window", "--units", self.units, "--forms", self.units)
        names = sorted(os.path.relpath(os.path.join(d, f), tree)
                       for d, _, files in os.walk(tree) for f in files if f.endswith(".pas"))
        project, unit = os.path.join(tree, "Window.dpr"), os.path.join(tree, "Long.pas")
        with open(project, "w", encoding="ascii") as file:
            entries = ",\n".join(f"  {os.path.basename(n)[:-4]} in '{n.replace('/', chr(92))}' {{Form}}" for n in names)
            file.write(f"program Window;\nuses\n{entries};\nbegin\nend.\n")
        with open(unit, "wb") as file:
            left = 30000
            for name in names:
                with open(os.path.join(tree, name), "rb") as source:
                    lines = source.read().splitlines(keepends=True)[:left]
                file.writelines(lines)
                left -= len(lines)
        form, _ = self.make("window-form", "--form", 4 * MB, "--objects", 1600)
        results, peaks = [], []
        for _ in range(3):
            os.environ["QT_QPA_PLATFORM"] = "offscreen"
            peaks.append(self.run([program, project]).peak)
            printed = subprocess.run([program, project, unit, os.path.join(form, "Big.dfm")], check=True,
                                     capture_output=True, text=True).stdout
            results.append([[float(word) for word in line.split()[:-1]] for line in printed.splitlines()])
        medians = [[statistics.median(run[i][j] for run in results) for j in range(len(results[0][i]))]
                   for i in range(3)]
        (opened, _), *files = medians
        yield Row("Opening a project in the window, seconds", opened, 1, True,
                  f"{len(names):,} units with forms; {max(peaks) / MB:.0f} MB")
        for what, (shown, blocked, scrolled) in zip(("a unit of 30,000 lines", "a form of 4 MB"), files):
            yield Row(f"Opening {what} in the window, seconds", shown, 1, True,
                      f"until it is painted; the window answers after {blocked * 1000:.0f} ms at the latest; the longest of "
                      f"100 steps of scrolling takes {scrolled * 1000:.0f} ms")


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        for line in lines:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return platform.machine()


def table(rows, rounds):
    lines = ["# Benchmarks", "",
             "Written by `./bench/run.sh`; do not edit. Each row but those of the window is a ratio within one run on one machine, so it says "
             f"something about other machines too: the median of {rounds} pairs of runs ({form_rounds(rounds)} for the "
             f"large forms), or of {REPETITIONS} repetitions for the grammar and the scanner; memory is the highest "
             "that was seen.", "",
             f"Machine: {os.cpu_count()} processors, {processor()}; {platform.system()} {platform.release()}.", "",
             "| What | Ratio | Target | | Details |", "|---|---:|---:|---|---|"]
    for row in rows:
        target = f"{'at most' if row.at_most else 'at least'} {row.target:g}" if row.target else "none"
        verdict = "" if not row.target else "met" if row.met() else "**missed**"
        lines.append(f"| {row.name} | {row.value:.2f} | {target} | {verdict} | {row.detail} |")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(prog="bench/run.sh")
    parser.add_argument("build")
    parser.add_argument("--quick", action="store_true", help="a tenth of the tree, three pairs: does it run at all?")
    parser.add_argument("--only", action="append", default=[], metavar="GROUP",
                        choices=GROUPS)
    arguments = parser.parse_args()
    rounds, units = (3, 300) if arguments.quick else (9, 3000)
    rows = []

    def measure(parent, groups):
        with tempfile.TemporaryDirectory(prefix="kva_bench", dir=parent) as folder:
            benchmarks = Benchmarks(os.path.abspath(arguments.build), folder, rounds, units)
            for group in groups:
                for row in getattr(benchmarks, group + "_rows")():
                    print(f"{row.value:8.2f}  {row.name}", file=sys.stderr)
                    rows.append(row)

    groups = arguments.only or GROUPS
    in_memory = os.path.isdir(MEMORY) and shutil.disk_usage(MEMORY).free > 2 * GB
    if not in_memory:  # all of it is on the disk
        groups = list(dict.fromkeys("tree" if group == "disk" else group for group in groups))
    measure(MEMORY if in_memory else None, [group for group in groups if group != "disk"])
    if in_memory and "disk" in groups:
        measure(None, ["tree"])
    text = table(rows, rounds)
    print(text, end="")
    if not arguments.only and not arguments.quick:
        os.makedirs("docs", exist_ok=True)
        with open("docs/benchmarks.md", "w", encoding="utf-8") as file:
            file.write(text)
    return 0 if all(row.met() for row in rows if row.target) else 1


if __name__ == "__main__":
    sys.exit(main())
