"""coverage.py LCOV REPORT: writes the lines that no test reaches, file by file, and prints the share of each folder."""

import os
import sys


def read_records(path):
    """Returns the counts of the executable lines: {file: {line: count}}."""
    files, lines = {}, {}
    with open(path, encoding="utf-8") as records:
        for record in records:
            kind, _, value = record.rstrip("\n").partition(":")
            if kind == "SF":
                lines = files.setdefault(os.path.relpath(os.path.realpath(value)), {})
            elif kind == "DA":
                line, count = value.split(",")[:2]
                lines[int(line)] = max(lines.get(int(line), 0), int(count))
    return files


def ranges(numbers):
    """Returns sorted line numbers as text: "3, 7-9"."""
    runs = []
    for number in numbers:
        if runs and number == runs[-1][1] + 1:
            runs[-1][1] = number
        else:
            runs.append([number, number])
    return ", ".join(str(first) if first == last else f"{first}-{last}" for first, last in runs)


def share(reached, total):
    return f"{100 * reached / total:5.1f} % of {total:5d} lines"


def main(lcov, report):
    folders = {}
    with open(report, "w", encoding="utf-8") as out:
        for name, lines in sorted(read_records(lcov).items()):
            missed = sorted(line for line, count in lines.items() if count == 0)
            totals = folders.setdefault(os.path.dirname(name), [0, 0])
            totals[0] += len(lines) - len(missed)
            totals[1] += len(lines)
            if missed:
                out.write(f"{name}: {ranges(missed)}\n")
    if not folders:
        sys.exit("coverage.py: no line was recorded")
    for folder, (reached, total) in sorted(folders.items()):
        print(f"{folder:20} {share(reached, total)}")
    print(f"{'together':20} {share(*map(sum, zip(*folders.values())))}; not reached: {report}")


if __name__ == "__main__":
    main(*sys.argv[1:])
