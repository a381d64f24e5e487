"""Tries faults on kvamigrate at every operation, prints a table, and fails when any of them is harmful."""
import argparse
import itertools
import multiprocessing
import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

import program as plan
from cases import FORMS, REPLACEMENTS, Cases
from judge import EditJudge, FullDiskJudge, Judge, SecondRunJudge
from program import Fault, Program

LARGE = 256 * 1024 * 1024
PAGE = os.sysconf('SC_PAGE_SIZE')
# An editor saves one of these during a run: file, what is replaced by what, and how the editor saves.
EDITS = {
    'written': ('Main.pas', b'end.\r\n', b'end.\r\n// EDITED\r\n', 'cat {new} > {file}'),
    'renamed': (
        'Sub/Orders.dfm',
        b"'Orders of today'",
        b"'EDITED of today'",
        'cp {new} {file}.new && mv {file}.new {file}',
    ),
}


class Worker:
    """One process's folder below `root`, and its cases and judges there."""

    def __init__(self, root, options):
        name = multiprocessing.current_process().name.replace(':', '-')
        self.root = os.path.join(root, name)
        self.temporary = os.path.join(self.root, 'tmp')
        self.folder = os.path.join(self.root, 'app')
        self.aside = os.path.join(self.root, 'aside')
        for folder in (self.root, self.temporary, self.folder, self.aside):
            os.makedirs(folder)
        self.program = Program(options.program, options.injector, self.temporary)
        self.cases = Cases(self.program, self.folder)
        self.judges = {}

    def reset(self, case):
        shutil.rmtree(self.temporary, ignore_errors=True)
        os.makedirs(self.temporary)
        case.start.put(case.folder)

    def judge_of(self, row, name, make):
        if (row, name) not in self.judges:
            self.judges[row, name] = make()
        return self.judges[row, name]

    def attempt(self, point):
        """(point, what the fault hit or None, problems, outcome)"""
        row, name, fault = point
        return getattr(self, 'try_' + row, self.try_fault)(row, name, fault)

    def try_fault(self, row, name, fault):
        case = self.cases[name]
        self.reset(case)
        outcome, hit = self.program.run_with(case.command, fault)
        if not hit and fault.action in ('cut', 'memory'):
            hit = 'the end' if fault.action == 'cut' else 'an allocation'
        if not hit:
            return None, [], outcome
        return (
            hit,
            self.judge_of('', name, lambda: Judge(self.program, case)).verdict(fault, outcome),
            outcome,
        )

    def try_second(self, row, name, fault):
        case = self.cases[name]
        self.reset(case)
        other = os.path.join(self.aside, 'second')
        command = ' '.join(shlex.quote(word) for word in [self.program.path] + case.command)
        fault = Fault('run', fault.at, command=f'{command} >{other}.out 2>&1; echo $? >{other}.status')
        outcome, hit = self.program.run_with(case.command, fault)
        if not hit:
            return None, [], outcome
        with open(other + '.out') as out, open(other + '.status') as status:
            outcome.err += f'{SecondRunJudge.SECOND}{status.read().strip()}\n{out.read()}'
        judge = self.judge_of(row, name, lambda: SecondRunJudge(self.program, case))
        return hit, judge.verdict(fault, outcome), outcome

    def try_edit(self, row, name, fault):
        case = self.cases[name]
        path, old, new, save = EDITS[fault.command]
        saved = case.before[path].replace(old, new)
        prepared = os.path.join(self.aside, 'saved')
        with open(prepared, 'wb') as file:
            file.write(saved)

        def make():
            case.start.put(case.folder)
            with open(os.path.join(case.folder, path), 'wb') as file:
                file.write(saved)
            self.program.run(case.command)
            with open(os.path.join(case.folder, path), 'rb') as file:
                return EditJudge(self.program, case, path, saved, file.read(), b'EDITED')

        judge = self.judge_of(row + fault.command, name, make)
        self.reset(case)
        command = save.format(new=shlex.quote(prepared), file=shlex.quote(os.path.join(case.folder, path)))
        outcome, hit = self.program.run_with(case.command, Fault('run', fault.at, command=command))
        return hit, judge.verdict(fault, outcome) if hit else [], outcome

    # Full disks: `fault.at` is the room left, in pages or in files, which the temporary folder may share.

    def disk(self):
        if not hasattr(self, 'small'):
            mounted = os.path.join(self.root, 'disk')
            os.makedirs(mounted)
            subprocess.run(['mount', '-t', 'tmpfs', '-o', f'size={LARGE}', 'tmpfs', mounted], check=True)
            self.small = mounted
            self.smallCases = Cases(self.program, os.path.join(mounted, 'app'))
        return self.small

    def limit(self, fault):
        used = os.statvfs(self.small)
        if fault.command.startswith('size'):
            option = f'size={(used.f_blocks - used.f_bfree + fault.at) * used.f_frsize}'
        else:
            option = f'nr_inodes={used.f_files - used.f_ffree + fault.at}'
        subprocess.run(['mount', '-o', f'remount,{option}', self.small], check=True)

    def unlimit(self):
        subprocess.run(['mount', '-o', f'remount,size={LARGE},nr_inodes=100000', self.small], check=True)

    def try_full(self, row, name, fault):
        disk = self.disk()
        self.unlimit()
        case = self.smallCases[name]
        self.reset(case)
        shared = os.path.join(disk, 'tmp')
        shutil.rmtree(shared, ignore_errors=True)
        os.makedirs(shared)
        temporary = shared if fault.command.endswith('shared') else self.temporary
        program = Program(self.program.path, self.program.injector, temporary)

        def run_again():
            self.limit(Fault('full', 0, command=fault.command))
            try:
                return program.run(case.command)
            finally:
                self.unlimit()

        self.limit(fault)
        outcome = program.run(case.command)
        self.unlimit()
        judge = FullDiskJudge(program, case, run_again)
        return 'a full disk' if outcome.status != 0 else 'room enough', judge.verdict(fault, outcome), outcome


def mounts(root):
    """True if small disks can be mounted here."""
    probe = os.path.join(root, 'probe')
    os.makedirs(probe, exist_ok=True)
    if subprocess.run(
        ['mount', '-t', 'tmpfs', '-o', 'size=64k', 'tmpfs', probe], stderr=subprocess.DEVNULL
    ).returncode:
        return False
    subprocess.run(['umount', probe], check=True)
    return True


LASTING = 11  # of so many allocations one is the first that fails for good: a run makes thousands


class Rows:
    """The rows of the table: what is tried, and the points (case, fault) of it."""

    def __init__(self, worker, root):
        self.worker = worker
        self.root = root
        self.counted = {}

    def operations(self, name):
        if name not in self.counted:
            case = self.worker.cases[name]
            self.worker.reset(case)
            self.counted[name] = self.worker.program.operations(case.command)[1]
        return self.counted[name]

    def each(self, names, *faults):
        return [(name, fault) for name in names for of in faults for fault in of(self.operations(name))]

    def moments(self, commands):
        return self.each(
            REPLACEMENTS[:2], *[lambda found, c=command: plan.moments(found, c) for command in commands]
        )

    def full(self, names):
        if not mounts(self.root):
            print('Full disks are not tried: no small disk can be mounted here.', file=sys.stderr)
            return []
        return [
            (name, Fault('full', room, command=f'{option} {shared}'))
            for name in names
            for option in ('size', 'nr_inodes')
            for shared in ('shared', 'apart')
            for room in range(36)
        ]

    def exhaustions(self, names):
        for name in names:
            case = self.worker.cases[name]
            self.worker.reset(case)
            for fault in plan.exhaustions(self.worker.program.allocations(case.command), LASTING):
                yield name, fault

    def table(self):
        """What tries the points of a row, its title, and what makes its points."""
        all_of = (plan.kills, plan.cuts, plan.failures)
        return [
            (
                'fault',
                'kill before or inside each operation of a replacement',
                lambda: self.each(REPLACEMENTS, plan.kills),
            ),
            (
                'fault',
                'power cut before each of them, and at the end',
                lambda: self.each(REPLACEMENTS[:3], plan.cuts),
            ),
            (
                'fault',
                'one failure, or failures from there on, at each operation',
                lambda: self.each(REPLACEMENTS, plan.failures),
            ),
            ('full', 'full disks', lambda: self.full(['folder-run', 'project-run', 'restore'])),
            ('second', 'a second run at each moment of a run', lambda: self.moments([''])),
            ('edit', 'a source saved by its editor at each moment of a run', lambda: self.moments(EDITS)),
            (
                'fault',
                'restore: killed, cut off or failing at each operation',
                lambda: self.each(['restore'], *all_of),
            ),
            (
                'fault',
                'form: killed, cut off or failing at each operation',
                lambda: self.each(FORMS, *all_of),
            ),
            ('full', 'form: full disks', lambda: self.full(FORMS)),
            (
                'fault',
                f'no memory at each allocation, or from every {LASTING}th on',
                lambda: self.exhaustions(['folder-run', 'project-run', 'restore', 'form-in-place']),
            ),
        ]


worker = None


def start_worker(root, options):
    global worker
    worker = Worker(root, options)


def attempt(point):
    try:
        return (point,) + worker.attempt(point)
    except Exception as error:  # told with its point, as the fault of this driver that it is
        raise RuntimeError(f'{point}: {error!r}') from error


def fault_text(fault):
    return ':'.join(
        str(field)
        for field in (
            fault.action,
            fault.at,
            ','.join(fault.kinds),
            fault.errno,
            int(fault.lasting),
            fault.command,
        )
    )


def parse(text):
    action, at, kinds, number, lasting, command = text.split(':', 5)
    return Fault(
        action, int(at), tuple(kinds.split(',')) if kinds else (), int(number), lasting == '1', command
    )


def try_one(options, root):
    """One point of the list of harmful ones again, to look at."""
    row, name, text = options.one
    one = Worker(root, options)
    one.attempt((row, name, parse(text)))  # the judge leaves the folder as its last attempt made it
    hit, problems, outcome = Worker(root + '-again', options).attempt((row, name, parse(text)))
    print(
        f'hit: {hit}\nexit status: {outcome.status}\n--- standard output\n{outcome.out}--- standard error\n'
        f'{outcome.err}---'
    )
    print('\n'.join(problems) or 'harmless')
    return 1 if problems else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument('--program', required=True)
    parser.add_argument('--injector', required=True)
    parser.add_argument(
        '--every', type=int, default=1, metavar='N', help='try every N-th point of a row alone'
    )
    parser.add_argument('--row', metavar='TEXT', help='try the rows alone whose name has this in it')
    parser.add_argument('--jobs', type=int, default=2)
    parser.add_argument(
        '--harmful', metavar='FILE', help='write all harmful points here; 5 of each row are printed'
    )
    parser.add_argument(
        '--one', nargs=3, metavar=('KIND', 'CASE', 'FAULT'), help='try one point, and tell all about it'
    )
    options = parser.parse_args()
    root = tempfile.mkdtemp(prefix='kvafaults', dir='/dev/shm' if os.path.isdir('/dev/shm') else None)
    try:
        if options.one:
            return try_one(options, root)
        return try_all(options, root)
    finally:
        for mounted in [line.split()[1] for line in open('/proc/mounts') if line.split()[1].startswith(root)]:
            subprocess.run(['umount', mounted])
        shutil.rmtree(root, ignore_errors=True)


def try_all(options, root):
    table = []
    harmful = []
    counter = Worker(root, options)
    with multiprocessing.get_context('fork').Pool(options.jobs, start_worker, (root, options)) as pool:
        for kind, title, make_points in Rows(counter, root).table():
            if options.row and options.row not in title:
                continue
            began = time.monotonic()
            tried = 0
            bad = []
            chosen = [
                (kind, name, fault) for name, fault in itertools.islice(make_points(), 0, None, options.every)
            ]
            for point, hit, problems, outcome in pool.imap_unordered(attempt, chosen, 16):
                tried += hit is not None
                if problems:
                    bad.append((title, point, hit, problems, outcome))
            table.append((title, tried, len(bad), time.monotonic() - began))
            print(
                f'{title}: {tried} points, {len(bad)} harmful, {table[-1][3]:.0f} s',
                file=sys.stderr,
                flush=True,
            )
            harmful += sorted(bad, key=lambda entry: (entry[1][1], entry[1][2].action, entry[1][2].at))
    tell(options, table, harmful)
    return 1 if harmful else 0


def tell(options, table, harmful):
    width = max(len(title) for title, *_ in table)
    print(f'| {"tried":{width}} | points | harmful |\n|{"-" * (width + 2)}|--------|---------|')
    for title, tried, bad, _ in table:
        print(f'| {title:{width}} | {tried:6} | {bad:7} |')
    if options.every > 1:
        print(f'Every {options.every}th point was tried. All of them: faults/run.sh')
    shown = {}
    file = open(options.harmful, 'w') if options.harmful else None
    for title, (kind, name, fault), hit, problems, outcome in harmful:
        text = [
            f'{title}: {name}, {fault}: {hit}',
            f'  exit status {outcome.status}; ' + ' / '.join(outcome.text().strip().splitlines()[-3:]),
        ]
        text += ['  ' + problem for problem in problems]
        text.append(f"  again: faults/run.sh --one {kind} {name} '{fault_text(fault)}'")
        shown[title] = shown.get(title, 0) + 1
        if shown[title] <= 5:
            print('\n'.join(text))
        if file:
            print('\n'.join(text), file=file)


if __name__ == '__main__':
    sys.exit(main())
