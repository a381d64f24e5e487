"""Runs the benchmarks and writes their table. Started by bench/run.sh.

Every row but those of the window is a ratio of two times (or of two sizes) taken within one run on one machine. The two
sides run in turn, A B A B ..., after a round that does not count, and the row shows the ratio of the fastest times,
because other programs of the machine can only add to a time. Before a program starts, its input is made again, all of
it in the cache. The folder lies in memory where the machine has such a place, so that the programs are measured and not
the disk that they share with others; the rows of the group "disk" are taken on the disk as well. Where the system
allows it, the programs run before those of ordinary priority.
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

from timing import fewer, pairs, run

MB, GB = 1 << 20, 1 << 30
MEMORY = "/dev/shm/"
PAGE = os.path.join("docs", "benchmarks.md")
GROUPS = {  # by name: the title of its table, and what its rows mean
    "tree": ("Whole runs", "A generated tree of which half the files change. The bare file operations are what any run "
             "with backups, an undo file and a log must do, without looking at the text: read each file, write each changed "
             "one to a temporary folder, copy its original to the backup folder, flush all that, and copy the temporary "
             "file over the original. All rows but that with findings are of runs with `-q`; a run without it also "
             "collects the findings of its report."),
    "dense": ("Whole runs over dense trees", "The same for a tree as dense as database applications: three of four files "
              "change, and a form has a component to convert on every 1,500 bytes."),
    "mechanism": ("Mechanisms", "The program without one of the mechanisms that exist for speed, beside the program. A "
                  "mechanism that shows no gain here is to go."),
    "size": ("Many files", "Time and memory grow no faster than the number of files."),
    "form": ("Large forms", "Time and memory grow no faster than the form."),
    "grammar": ("Grammar", "Time for each byte of an object, at its largest size beside its smallest."),
    "conversion": ("Text and binary forms", "The conversion of Free Pascal's run-time library, beside ours."),
    "scanner": ("Scanner of units and forms", "A loop that adds up all bytes, beside the scanner."),
    "window": ("The window", "Seconds of processor time, not ratios."),
    "disk": ("On the disk", "The whole runs again, on the disk, and the program without its flush: what it costs that "
             "backups and changed files are on the disk before the first original is replaced."),
}
REPETITIONS = 5  # of the grammar and the scanner
CLASSES = {  # the classes that perl renames, those of the family bde
    "TDatabase": "TKVAConnection", "TQuery": "TKVAQuery", "TwwQuery": "TKVAQuery", "TTable": "TKVATable",
    "TwwTable": "TKVATable", "TStoredProc": "TKVAStoredProc", "TwwStoredProc": "TKVAStoredProc",
    "TUpdateSQL": "TKVAUpdateSQL", "EDBEngineError": "EKVAError", "TBatchMove": "THXBatchMove",
}


MECHANISMS = {  # by the end of the name of the program without it
    "thread": "the second thread", "ahead": "reading files ahead", "search": "the word search before the scanner",
    "move": "moving changed files into place", "trust": "10 ms of trust in a listing", "cache": "listings kept by own changes",
    "memory": "keeping freed memory",
}


@dataclass
class Row:
    name: str
    value: float
    target: float
    at_most: bool  # else at least
    detail: str

    def met(self):
        return self.value <= self.target if self.at_most else self.value >= self.target


def size_of(tree):
    return sum(os.path.getsize(os.path.join(d, f)) for d, _, files in os.walk(tree) for f in files)


class Benchmarks:
    def __init__(self, build, folder, rounds, units):
        self.bin = os.path.join(build, "bench")
        self.program = os.path.join(build, "cli", "kvamigrate")
        self.folder, self.units = folder, units
        self.work = os.path.join(folder, "work")
        self.on_disk = not folder.startswith(MEMORY)
        self.rounds = fewer(rounds) if self.on_disk else rounds

    def run(self, command, cwd=None):
        return run(command, self.folder, cwd)

    def fresh(self, tree):
        """A copy of the tree, all of it in the cache, none of it waiting for the disk, and nothing left to be done for it."""
        shutil.rmtree(self.work, ignore_errors=True)
        subprocess.run(["cp", "-a", tree, self.work], check=True)
        if self.on_disk:
            os.sync()
        time.sleep(0.3)  # the system is still removing the previous tree

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def make(self, name, *arguments):
        tree, listed = self.path(name), self.path(name + ".list")
        if not os.path.exists(tree):
            self.run([os.path.join(self.bin, "kva_maketree"), tree, "--list", listed, *map(str, arguments)])
        return tree, listed

    def migrate(self, tree, *options, without=None):
        """One run over a fresh copy of the tree, by the program or by that without a mechanism. A run that changed
        nothing is an error."""
        self.fresh(tree)
        program = os.path.join(self.bin, "kvamigrate_without_" + without) if without else self.program
        cost = self.run([program, "replace", "--mode", "bde", "--folder", self.work, "--subfolders", *options])
        if not os.path.getsize(os.path.join(self.work, "RBackup", "RExpert.reu")):
            raise RuntimeError(f"the run over {tree} changed nothing")
        return cost

    def quiet(self, tree, without=None):
        return self.migrate(tree, "--quiet", without=without)

    # -- whole runs ------------------------------------------------------------------------------------------------

    def sparse(self):
        tree, listed = self.make("tree", "--units", self.units, "--forms", self.units)
        return tree, listed, f"{2 * self.units:,} files, {size_of(tree) / MB:.0f} MB, half of them changing"

    def dense(self):
        count = self.units * 3 // 20
        tree, listed = self.make("dense", "--dense", "--units", count, "--forms", count, "--changing", 75)
        return tree, listed, f"{2 * count} files, {size_of(tree) / MB:.0f} MB, three of four changing, dense forms"

    def whole_rows(self, tree, listed, what):
        names = [os.path.join(d, f) for d, _, files in os.walk(tree) for f in files]

        def bare(*options):
            self.fresh(tree)
            return self.run([os.path.join(self.bin, "kva_barecopy"), self.work, listed, *options])

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
        ratio, words = pairs(self.rounds, lambda: self.quiet(tree), bare)
        yield Row(f"Whole run, beside the bare file operations: {place}", ratio, 1.25, True, f"{what}; {words}")
        ratio, words = pairs(self.rounds, lambda: self.quiet(tree), lambda: bare("--move"))
        yield Row(f"Whole run, beside bare operations that move changed files into place: {place}", ratio, 0, True,
                  f"{what}; {words}")
        ratio, words = pairs(self.rounds, lambda: self.migrate(tree), lambda: self.quiet(tree))
        yield Row(f"Whole run with findings, beside one without: {place}", ratio, 1.10, True, f"{what}; {words}")
        ratio, words = pairs(self.rounds, perl, lambda: self.quiet(tree))
        yield Row(f"`perl -pi.bak` renaming the classes, beside the whole run: {place}", ratio, 3, False,
                  f"{what}; {words}" + ("; perl flushes nothing to the disk" if self.on_disk else ""))
        if self.on_disk:
            ratio, words = pairs(self.rounds, lambda: self.quiet(tree), lambda: self.quiet(tree, without="flush"))
            yield Row("Whole run, beside one that does not flush: on the disk", ratio, 0, True, f"{what}; {words}")
            ratio, words = pairs(self.rounds, perl, lambda: self.quiet(tree, without="flush"))
            yield Row("`perl -pi.bak`, beside the whole run without its flush: on the disk", ratio, 3, False,
                      f"{what}; {words}")

    def tree_rows(self):
        yield from self.whole_rows(*self.sparse())

    def dense_rows(self):
        yield from self.whole_rows(*self.dense())

    def disk_rows(self):
        for tree in (self.sparse(), self.dense()):
            yield from self.whole_rows(*tree)

    def mechanism_rows(self):
        """Each mechanism that exists for speed, taken away."""
        for tree, _, what in (self.dense(), self.sparse()):
            for without, name in MECHANISMS.items():
                ratio, words = pairs(self.rounds, lambda: self.quiet(tree, without), lambda: self.quiet(tree))
                yield Row(f"Without {name}, beside the whole run", ratio, 1, False, f"{what}; {words}")

    def size_rows(self):
        few, many = 10 * self.units // 6, 100 * self.units // 6
        small, _ = self.make("small", "--units", few, "--forms", few)
        large, _ = self.make("large", "--units", many, "--forms", many)
        peaks = {small: [], large: []}

        def on(tree):
            cost = self.quiet(tree)
            peaks[tree].append(cost.peak)
            return cost

        ratio, words = pairs(2, lambda: on(large), lambda: on(small))
        what = f"{2 * many:,} files, {size_of(large) / MB:.0f} MB, and {2 * few:,}"
        yield Row(f"{2 * many:,} files, beside {2 * few:,}: time", ratio, 12, True, f"{what}; {words}")
        yield Row(f"{2 * many:,} files, beside {2 * few:,}: peak memory", max(peaks[large]) / max(peaks[small]), 10, True,
                  f"{max(peaks[large]) / MB:.0f} MB to {max(peaks[small]) / MB:.0f} MB")

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

            ratio, words = pairs(fewer(self.rounds), on_large, lambda: self.migrate(small))
            size = os.path.getsize(os.path.join(large, "Big.dfm"))
            yield Row(f"A form of 50 MB, beside one of 5 MB: {kind}", ratio, 10, True,
                      f"20,000 and 2,000 objects to convert; {words}")
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
        os.remove(unit)
        longest = {}
        for _ in range(3):
            self.fresh(tree)
            printed = subprocess.run([os.path.join(self.bin, "RunWindowBench"), os.path.join(self.work, "Window.dpr"),
                                      os.path.join(os.path.dirname(self.bin), "target", "kvaexpert.so")],
                                     env=os.environ | {"TMPDIR": self.folder}, check=True, capture_output=True,
                                     text=True).stdout
            for line in printed.splitlines():
                waited, _, step = line.split(maxsplit=2)
                longest.setdefault(step, []).append(float(waited))
        waits = {step: statistics.median(times) for step, times in longest.items()}
        yield Row("Longest wait of an event in the window, seconds", max(waits.values()), 0.2, True,
                  f"{2 * len(names):,} files; " + ", ".join(f"{step} {wait * 1000:.0f} ms" for step, wait in waits.items()))


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        for line in lines:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return platform.machine()


def introduction(rounds):
    return (
        "# Benchmarks\n\n"
        "Written by `./bench/run.sh`, which takes about 40 minutes; do not edit. `./bench/run.sh --only dense` measures one "
        f"group ({', '.join(GROUPS)}) and replaces its table. `--quick` shows in a few minutes whether all of it runs, and "
        "writes nothing.\n\n"
        "Each row but those of the window is a ratio within one run on one machine, so it says something about other "
        f"machines too: the fastest of {rounds} runs each ({fewer(rounds)} for the large forms and on the disk, 2 for "
        f"100,000 files), one after the other in turn, or the median of {REPETITIONS} repetitions for the grammar and the "
        "scanner. Memory is the highest that was seen. Where it matters, the details also give the ratio of "
        "processor times: a run works on two threads, the bare operations and perl on one.\n\n"
        f"Machine: {os.cpu_count()} processors, {processor()}; {platform.system()} {platform.release()}.\n")


def section(group, rows):
    """The table of one group, with the commit that it was measured at."""
    title, meaning = GROUPS[group]
    commit = subprocess.run(["git", "rev-parse", "--short", "HEAD"], check=True, capture_output=True, text=True).stdout.strip()
    lines = [f"## {title}", "", f"{meaning} Measured at commit {commit}.", "",
             "| What | Ratio | Target | | Details |", "|---|---:|---:|---|---|"]
    for row in rows:
        target = f"{'at most' if row.at_most else 'at least'} {row.target:g}" if row.target else "none"
        verdict = "" if not row.target else "met" if row.met() else "**missed**"
        lines.append(f"| {row.name} | {row.value:.2f} | {target} | {verdict} | {row.detail} |")
    return "\n".join(lines) + "\n"


def update_page(group, text, rounds):
    """Replaces the table of one group in the page, and keeps those of the others."""
    old = ""
    if os.path.exists(PAGE):
        with open(PAGE, encoding="utf-8") as file:
            old = file.read()
    sections = {part.split("\n", 1)[0]: "## " + part.rstrip("\n") + "\n" for part in old.split("\n## ")[1:]}
    sections[GROUPS[group][0]] = text
    kept = [sections[title] for title, _ in GROUPS.values() if title in sections]
    with open(PAGE, "w", encoding="utf-8") as file:
        file.write("\n".join([introduction(rounds), *kept]))


def main():
    parser = argparse.ArgumentParser(prog="bench/run.sh")
    parser.add_argument("build")
    parser.add_argument("--quick", action="store_true", help="a tenth of the tree, three pairs: does it run at all?")
    parser.add_argument("--only", action="append", default=[], metavar="GROUP",
                        choices=list(GROUPS))
    arguments = parser.parse_args()
    rounds, units = (3, 300) if arguments.quick else (15, 3000)
    missed = False

    def measure(parent, groups):
        nonlocal missed
        with tempfile.TemporaryDirectory(prefix="kva_bench", dir=parent) as folder:
            benchmarks = Benchmarks(os.path.abspath(arguments.build), folder, rounds, units)
            for group in groups:
                rows = []
                for row in getattr(benchmarks, group + "_rows")():
                    print(f"{row.value:8.2f}  {row.name}", file=sys.stderr)
                    rows.append(row)
                missed = missed or not all(row.met() for row in rows if row.target)
                text = section(group, rows)
                print(text, flush=True)
                if not arguments.quick:
                    update_page(group, text, rounds)

    groups = arguments.only or list(GROUPS)
    in_memory = os.path.isdir(MEMORY) and shutil.disk_usage(MEMORY).free > 4 * GB
    measure(MEMORY if in_memory else None, [group for group in groups if group != "disk"])
    if "disk" in groups:
        measure(None, ["disk"])
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
