"""Runs kvamigrate, with one fault or none, and remembers what became of it."""
import errno
import os
import re
import signal
import subprocess
from dataclasses import dataclass

HANGS_AFTER = 30  # seconds

# The kinds of operations (FaultPlan.h) that change the disk. A kill between others finds the same files.
CHANGING = [
    'create',
    'write',
    'copy',
    'size',
    'rename',
    'link',
    'unlink',
    'mkdir',
    'mode',
    'owner',
    'time',
    'label',
    'flush',
]
BYTES = ['write', 'copy']
# The kinds that an error can happen to.
KINDS_OF_ERROR = {
    errno.ENOSPC: ['create', 'write', 'copy', 'size', 'rename', 'link', 'mkdir', 'label', 'flush', 'close'],
    errno.EIO: [
        'open',
        'create',
        'read',
        'list',
        'look',
        'write',
        'copy',
        'size',
        'rename',
        'link',
        'unlink',
        'mkdir',
        'mode',
        'owner',
        'time',
        'label',
        'flush',
        'close',
    ],
    errno.EACCES: ['open', 'create', 'look', 'rename', 'link', 'unlink', 'mkdir', 'mode', 'owner', 'time'],
    errno.EROFS: ['create', 'size', 'rename', 'link', 'unlink', 'mkdir', 'mode', 'owner', 'time', 'label'],
    errno.EMFILE: ['open', 'create', 'dup'],
    errno.EINTR: ['open', 'create', 'read', 'write', 'copy', 'flush', 'close', 'lock'],
    errno.ENOLCK: ['lock'],
    errno.EAGAIN: ['thread'],
}
SHORT_KINDS = ['read', 'write', 'copy']


@dataclass(frozen=True)
class Fault:
    """One fault: the environment of the injector, but for where its files are."""

    action: str
    at: int
    kinds: tuple = ()
    errno: int = 0
    lasting: bool = False
    command: str = ''

    def environment(self):
        variables = {
            'FAULTS_ACTION': self.action,
            'FAULTS_AT': str(self.at),
            'FAULTS_KINDS': ','.join(self.kinds),
        }
        if self.errno:
            variables['FAULTS_ERRNO'] = str(self.errno)
        if self.lasting:
            variables['FAULTS_LASTING'] = '1'
        if self.command:
            variables['FAULTS_COMMAND'] = self.command
        return variables

    def __str__(self):
        error = f' with {errno.errorcode[self.errno]}' if self.errno else ''
        return f'{self.action} at {self.at}{error}{" and from there on" if self.lasting else ""}'


@dataclass
class Outcome:
    status: int  # as of subprocess: negative for a signal
    out: str
    err: str
    hung: bool = False

    def text(self):
        return self.out + self.err

    def key(self):
        """The same for outcomes that differ in process ids, numbers and times alone."""
        return self.status, re.sub(r'[0-9a-f]+', '#', self.text())


class Program:
    """kvamigrate, its injector, and the folders of one worker."""

    def __init__(self, path, injector, temporary):
        self.path = path
        self.injector = injector
        self.temporary = temporary
        self.list = temporary + '.list'
        self.report = temporary + '.report'
        self.environment = {
            'PATH': os.environ['PATH'],
            'TMPDIR': temporary,
            'HOME': temporary,
            'LC_ALL': 'C.UTF-8',
        }

    def start(self, arguments, environment):
        process = subprocess.Popen(
            [self.path] + arguments,
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            close_fds=False,
        )
        try:
            out, err = process.communicate(timeout=HANGS_AFTER)
        except subprocess.TimeoutExpired:
            process.send_signal(signal.SIGKILL)
            out, err = process.communicate()
            return Outcome(
                process.returncode, out.decode(errors='replace'), err.decode(errors='replace'), True
            )
        return Outcome(process.returncode, out.decode(errors='replace'), err.decode(errors='replace'))

    def run(self, arguments):
        return self.start(arguments, self.environment)

    def run_with(self, arguments, fault):
        """The outcome, and the operation at which the fault happened, or None where it did not."""
        for name in (self.list, self.report):
            if os.path.exists(name):
                os.remove(name)
        outcome = self.start(
            arguments,
            {
                **self.environment,
                **fault.environment(),
                'LD_PRELOAD': self.injector,
                'FAULTS_LIST': self.list,
                'FAULTS_REPORT': self.report,
            },
        )
        happened = None
        if os.path.exists(self.report):
            with open(self.report, errors='replace') as file:
                happened = file.readline().strip()
        return outcome, happened

    def operations(self, arguments):
        """The kinds of all operations of a run without a fault."""
        outcome, _ = self.run_with(arguments, Fault('list', 0))
        with open(self.list, errors='replace') as file:
            return outcome, [line.split(' ')[1] for line in file]

    def allocations(self, arguments):
        """How many allocations a run without a fault makes."""
        self.run_with(arguments, Fault('memory', 0))
        with open(self.list) as file:
            return int(file.readline())


def kills(operations):
    """A kill before each change, and in the middle of each write."""
    for at, kind in enumerate(operations, 1):
        if kind in CHANGING:
            yield Fault('kill', at, tuple(CHANGING))
        if kind in BYTES:
            yield Fault('part', at, tuple(BYTES))


def cuts(operations):
    """A power cut before each change, and at the end."""
    for at, kind in enumerate(operations, 1):
        if kind in CHANGING:
            yield Fault('cut', at, tuple(CHANGING))
    yield Fault('cut', 1000000)


def failures(operations):
    """Each operation once with each error that can happen to it, and with all later ones of those kinds."""
    for at, kind in enumerate(operations, 1):
        for number, kinds in KINDS_OF_ERROR.items():
            if kind not in kinds:
                continue
            yield Fault('fail', at, tuple(kinds), number)
            if number != errno.EINTR:  # no system interrupts every call for ever
                yield Fault('fail', at, tuple(kinds), number, lasting=True)
        if kind in SHORT_KINDS:
            yield Fault('short', at, tuple(SHORT_KINDS))
            yield Fault('short', at, tuple(SHORT_KINDS), lasting=True)


def moments(operations, command):
    """A command at each operation except listings and duplicates of descriptors."""
    for at, kind in enumerate(operations, 1):
        if kind not in ('list', 'dup'):
            yield Fault('run', at, command=command)


def exhaustions(count, stride):
    """No memory for each allocation, and from every `stride`th on for all."""
    for at in range(1, count + 1):
        yield Fault('memory', at)
        if at % stride == 0:
            yield Fault('memory', at, lasting=True)
